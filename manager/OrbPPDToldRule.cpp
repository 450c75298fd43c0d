#include "manager/OrbPPDToldRule.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "core_interface/TkCSKeys.h"
#include "manager/ITkPPDStatusReading.h"
#include "manager/StatusWithValue.h"
#include "ppd/OrbPPDProcessor.h"

namespace TkPPDUpdating {

namespace {

/// PPD specification 4.3, section 3.6.
constexpr std::size_t kLongestLine = 255;

/// The PPD keyword of a pens' value that an entry stands for; nothing for any other entry.
std::optional<std::string_view> penKeywordOfEntry(std::string_view entry) {
    const std::size_t keyLength = kTkCSInstalledPensConfigurationKey.size();
    const bool isPart = entry.size() > keyLength + 1 && entry[keyLength] == '.' &&
                        entry.starts_with(kTkCSInstalledPensConfigurationKey);
    const auto part = isPart ? entry.substr(keyLength + 1) : std::string_view();
    return isPart && part != kTkCSPensCodeNamePart ? std::optional(part) : std::nullopt;
}

/// Whether the line has that main keyword, in any form that an attribute may have.
bool hasMainKeyword(std::string_view line, std::string_view keyword) {
    return line.size() > keyword.size() + 1 && line.front() == '*' &&
           line.substr(1).starts_with(keyword) &&
           std::string_view(" \t/:").find(line[keyword.size() + 1]) != std::string_view::npos;
}

std::string_view withoutBlanksAround(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// The value of the line "*KEYWORD: value" when it is the only one of its keyword, unquoted, and
/// not too long to be written again.
std::optional<std::string> onlyUnquotedValue(std::string_view contents, std::string_view keyword) {
    std::optional<std::string_view> onlyLine;
    while (!contents.empty()) {
        const std::string_view line = contents.substr(0, contents.find('\n'));
        contents.remove_prefix(std::min(contents.size(), line.size() + 1));
        const bool isFound =
            OrbPPDProcessor::scanLine_forAttributeWithKeyword_spec_value(line, keyword, {}, {});
        if (!isFound && !hasMainKeyword(line, keyword)) {
            continue;
        }
        if (!isFound || onlyLine) {
            return std::nullopt;
        }
        onlyLine = line;
    }
    const std::size_t colon = onlyLine ? onlyLine->find(':') : std::string_view::npos;
    if (colon == std::string_view::npos || onlyLine->find('"') != std::string_view::npos) {
        return std::nullopt;
    }
    std::string value(withoutBlanksAround(onlyLine->substr(colon + 1)));
    const bool fits =
        std::string_view("*: ").size() + keyword.size() + value.size() <= kLongestLine;
    return fits ? std::optional(std::move(value)) : std::nullopt;
}

/// Whether those custom media types were told that the status holds, and no more.
bool areSomeMediaTypesTold(std::string_view entry, const std::optional<OrbCSToldEntries>& told) {
    return entry == kTkCSCustomMediaTypesKey &&
           told->contains(OrbCSPartialStatus::entryForPart(kTkCSCustomMediaTypesKey,
                                                           kTkCSReportedMediaTypesPart));
}

/// Adds to the decision how each entry that was not told is completed; false when one cannot be.
bool complete(OrbPPDToldDecision& decision, const std::optional<OrbCSToldEntries>& told,
              bool isSomeTold, std::string_view contents) {
    for (const std::string& entry : decision.notTold) {
        if (areSomeMediaTypesTold(entry, told)) {
            decision.completesMediaTypes = true;
            continue;
        }
        const auto keyword = isSomeTold ? penKeywordOfEntry(entry) : std::nullopt;
        auto value = keyword ? onlyUnquotedValue(contents, *keyword) : std::nullopt;
        if (!value) {
            return false;
        }
        decision.completedPenValues.emplace(*keyword, *std::move(value));
    }
    return true;
}

}  // namespace

bool OrbPPDToldRule::readsStatus(const ITkPPDUpdater& updater) {
    const auto* const reading = dynamic_cast<const ITkPPDStatusReading*>(&updater);
    return !reading || !reading->statusEntriesRead().empty();
}

OrbPPDToldDecision OrbPPDToldRule::decision(const ITkPPDUpdater& updater,
                                            const std::optional<OrbCSToldEntries>& told,
                                            std::string_view contents) {
    OrbPPDToldDecision decision;
    const auto* const reading = dynamic_cast<const ITkPPDStatusReading*>(&updater);
    const auto entries = reading ? reading->statusEntriesRead() : std::vector<std::string>();
    std::copy_if(
        entries.begin(), entries.end(), std::back_inserter(decision.notTold),
        [&told](const std::string& entry) { return !OrbCSPartialStatus::isTold(told, entry); });
    if (decision.notTold.empty()) {
        return decision;
    }
    OrbPPDToldDecision completed = decision;
    completed.kind = OrbPPDToldDecision::Kind::runCompleted;
    if (complete(completed, told, decision.notTold.size() < entries.size(), contents)) {
        return completed;
    }
    decision.kind = OrbPPDToldDecision::Kind::keep;
    return decision;
}

std::shared_ptr<const OrbCSDeviceStatus> OrbPPDToldRule::completedStatus(
    std::shared_ptr<const OrbCSDeviceStatus> status, const OrbPPDUpdatingValues& penValues) {
    if (penValues.empty()) {
        return status;
    }
    const auto* const told =
        status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    OrbCSPensConfiguration pens = told ? *told : OrbCSPensConfiguration();
    for (const auto& [keyword, value] : penValues) {
        pens.PPDAttributeValues.insert_or_assign(keyword, value);
    }
    return std::make_shared<const StatusWithValue>(
        std::move(status), kTkCSInstalledPensConfigurationKey, std::move(pens));
}

}  // namespace TkPPDUpdating
