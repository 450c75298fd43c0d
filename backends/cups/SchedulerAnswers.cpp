#include "backends/cups/SchedulerAnswers.h"

#include <cups/cups.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace TkPPDUpdating {

namespace {

constexpr auto kSettings = std::to_array<const char*>(
    {"copies-default", "job-hold-until-default", "job-priority-default", "job-sheets-default",
     "number-up-default", "port-monitor", "printer-error-policy", "printer-info",
     "printer-is-accepting-jobs", "printer-is-shared", "printer-location", "printer-op-policy"});

SchedulerQueue::Kind kindOfQueue(int printerType) {
    const auto bits = static_cast<unsigned>(printerType);
    return bits & static_cast<unsigned>(CUPS_PRINTER_REMOTE)  ? SchedulerQueue::Kind::remote
           : bits & static_cast<unsigned>(CUPS_PRINTER_CLASS) ? SchedulerQueue::Kind::printerClass
                                                              : SchedulerQueue::Kind::own;
}

std::string textOf(ipp_attribute_t* attribute, int place) {
    const char* text = attribute ? ippGetString(attribute, place, nullptr) : nullptr;
    return text ? text : "";
}

std::string wholeTextOf(ipp_attribute_t* attribute) {
    std::string text(ippAttributeString(attribute, nullptr, 0) + 1, '\0');
    ippAttributeString(attribute, text.data(), text.size());
    text.pop_back();
    return text;
}

}  // namespace

std::span<const char* const> schedulerSettings() {
    return kSettings;
}

std::vector<std::string> queueNamesInAnswer(ipp_t* answer) {
    std::vector<std::string> names;
    std::string name;
    int type = 0;
    const auto endOfQueue = [&] {
        if (!name.empty() && kindOfQueue(type) != SchedulerQueue::Kind::remote) {
            names.push_back(name);
        }
        name.clear();
        type = 0;
    };
    for (ipp_attribute_t* attribute = ippFirstAttribute(answer); attribute;
         attribute = ippNextAttribute(answer)) {
        const char* attributeName = ippGetName(attribute);
        if (!attributeName || ippGetGroupTag(attribute) != IPP_TAG_PRINTER) {
            endOfQueue();
        } else if (std::string_view(attributeName) == "printer-name") {
            const char* text = ippGetString(attribute, 0, nullptr);
            name = text ? text : "";
        } else if (std::string_view(attributeName) == "printer-type") {
            type = ippGetInteger(attribute, 0);
        }
    }
    endOfQueue();
    std::sort(names.begin(), names.end());
    return names;
}

SchedulerQueue queueInAnswer(ipp_t* answer, const std::string& name) {
    const auto integerOf = [answer](const char* attributeName, ipp_tag_t tag, int absent) {
        ipp_attribute_t* attribute = ippFindAttribute(answer, attributeName, tag);
        return attribute ? ippGetInteger(attribute, 0) : absent;
    };
    SchedulerQueue queue;
    queue.name = name;
    queue.kind = kindOfQueue(integerOf("printer-type", IPP_TAG_ENUM, 0));
    queue.deviceURI = textOf(ippFindAttribute(answer, "device-uri", IPP_TAG_URI), 0);
    queue.configChangeTime = integerOf("printer-config-change-time", IPP_TAG_INTEGER, 0);
    queue.state = static_cast<SchedulerQueue::State>(
        integerOf("printer-state", IPP_TAG_ENUM, static_cast<int>(SchedulerQueue::State::idle)));
    ipp_attribute_t* reasons = ippFindAttribute(answer, "printer-state-reasons", IPP_TAG_KEYWORD);
    for (int place = 0; reasons && place < ippGetCount(reasons); ++place) {
        queue.stateReasons.push_back(textOf(reasons, place));
    }
    std::erase(queue.stateReasons, "none");
    for (const char* setting : kSettings) {
        if (ipp_attribute_t* attribute = ippFindAttribute(answer, setting, IPP_TAG_ZERO)) {
            queue.settings.emplace(setting, wholeTextOf(attribute));
        }
    }
    return queue;
}

}  // namespace TkPPDUpdating
