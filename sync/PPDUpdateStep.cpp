#include "sync/PPDUpdateStep.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "core_interface/OrbCSPartialStatus.h"
#include "manager/ITkPPDStatusReading.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "sync/StatusValueText.h"
#include "text/SeededTextHash.h"

namespace TkPPDUpdating {

namespace {

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(text.size(), end + 1));
    }
    return lines;
}

/// The lines of `lines` that `others` does not have, or not as often.
std::vector<std::string> linesWithout(const std::vector<std::string_view>& lines,
                                      const std::vector<std::string_view>& others) {
    std::unordered_map<std::string_view, std::size_t, SeededTextHash> known;
    for (const std::string_view line : others) {
        ++known[line];
    }
    std::vector<std::string> rest;
    for (const std::string_view line : lines) {
        const auto same = known.find(line);
        if (same == known.end() || same->second == 0) {
            rest.emplace_back(line);
        } else {
            --same->second;
        }
    }
    return rest;
}

PPDUpdateStep::Reading readingOf(const std::string& entry, const PPDUpdateAnswer& answer) {
    PPDUpdateStep::Reading reading{entry, statusValueText(*answer.completed, entry), {}};
    if (!OrbCSPartialStatus::isTold(OrbCSPartialStatus::toldEntriesOf(*answer.status), entry)) {
        reading.value += " (from the PPD: the printer did not tell)";
    } else {
        reading.sources = OrbCSStatusSources::sourcesOf(*answer.status, entry);
    }
    return reading;
}

std::vector<PPDUpdateStep::Reading> readingsOf(const ITkPPDUpdater& updater,
                                               const PPDUpdateAnswer& answer) {
    std::vector<PPDUpdateStep::Reading> readings;
    const auto* const known = dynamic_cast<const ITkPPDStatusReading*>(&updater);
    if (known && answer.status) {
        for (const std::string& entry : known->statusEntriesRead()) {
            readings.push_back(readingOf(entry, answer));
        }
    }
    return readings;
}

}  // namespace

PPDUpdateStep stepBetween(std::string updater, std::string_view before, std::string_view after) {
    const auto linesBefore = linesOf(before);
    const auto linesAfter = linesOf(after);
    return {std::move(updater),
            {},
            linesWithout(linesBefore, linesAfter),
            linesWithout(linesAfter, linesBefore)};
}

ExplainedPPDUpdate explainedPPDUpdate(const OrbPPDConcreteUpdatingManager& manager,
                                      const PPDModelFile& PPD,
                                      std::optional<std::string_view> deviceURI,
                                      const PPDUpdateAnswer& answer) {
    OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(answer.completed, nullptr);
    ExplainedPPDUpdate update{PPD.text(), {}};
    for (const OrbClass* updaterClass : manager.registeredClasses()) {
        const auto updater = updaterClass->newInstance();
        PPDText updated = updater && updater->isApplicableForPPDFile(&PPD)
                              ? updater->updatedPPDContentsForContents_deviceURI_context(
                                    update.text, deviceURI, &context)
                              : nullptr;
        if (!updated || *updated == *update.text) {
            continue;
        }
        update.steps.push_back(
            stepBetween(std::string(updaterClass->name()), *update.text, *updated));
        update.steps.back().readings = readingsOf(*updater, answer);
        update.text = std::move(updated);
    }
    return update;
}

}  // namespace TkPPDUpdating
