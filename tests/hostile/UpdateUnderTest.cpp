#include "tests/hostile/UpdateUnderTest.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string_view>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "sync/UpdateGuard.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {

namespace {

using Status = std::shared_ptr<const OrbCSDeviceStatus>;
using Names = std::set<std::string, std::less<>>;

/// The attributes "*KEYWORD: value" that a printer's texts and numbers become.
const Names& attributesOfPrinters() {
    static const Names kNames = {
        "BPECalibrationDue",      "ZrMaxSupportedResolution", "ZrEPRPageTypes",
        "ZrEPRMinPageCounts",     "ZrEPRMaxPageCounts",       "ZrEPRStates",
        "ZrEPRLastUpdate",        "ZrPensConfigName",         "ZrPenDyes",
        "ZrPenDropVolumes",       "ZrPenEverydayStatus",      "ZrPenFamilyIDs",
        "ZrPenActualDropVolumes", "ZrPenNominalDropVolumes",  "ZrPenBriskDropVolumes",
        "ZrPenInkSufficient",     "ZrPenHasPrintheadDefect"};
    return kNames;
}

bool isPensOption(std::string_view option) {
    return option == "ZrPenConfig" || option == "ZrPenConfigOptions";
}

bool isCustomName(std::string_view name) {
    return name.starts_with("custom") && name.size() > 6 &&
           name.find_first_not_of("0123456789", 6) == std::string_view::npos;
}

std::string_view withoutLanguage(std::string_view keyword) {
    const std::size_t stop = keyword.find('.');
    return stop == std::string_view::npos ? keyword : keyword.substr(stop + 1);
}

/// Whether a fact is one that the custom media updater makes of a printer's media types.
bool isOfCustomMedia(const LibcupsFact& fact) {
    if (fact.kind == "choice") {
        return (fact.keyword == "MediaType" && isCustomName(fact.optionKeyword)) ||
               fact.keyword == "ZrICCProfileId2";
    }
    const std::string_view keyword = withoutLanguage(fact.keyword);
    if (fact.kind != "attribute") {
        return false;
    }
    return (keyword == "MediaType" && isCustomName(fact.optionKeyword)) ||
           (keyword == "ZrICCProfileId2" && !fact.optionKeyword.empty()) ||
           (keyword == "cupsICCProfile" && fact.optionKeyword.starts_with("..")) ||
           (keyword == "ZrChoiceProperties" &&
            fact.optionKeyword.starts_with("MediaType.custom")) ||
           // libcups puts a line before an option keyword that could be taken for custom values.
           (keyword == "ZrMediaTypeCategory" && fact.optionKeyword == "_custom");
}

/// Whether the fact is a value of a printer in a place of its own.
bool isOfPrinter(const LibcupsFact& fact) {
    if (fact.kind == "attribute") {
        const bool isPensDefault = fact.keyword.starts_with("Default") &&
                                   isPensOption(std::string_view(fact.keyword).substr(7));
        return fact.optionKeyword.empty() && fact.text.empty() &&
               (attributesOfPrinters().contains(fact.keyword) || isPensDefault);
    }
    return fact.kind == "default" && isPensOption(fact.keyword);
}

bool hasControlCharacter(const LibcupsFact& fact) {
    for (const std::string* const text :
         {&fact.keyword, &fact.optionKeyword, &fact.text, &fact.value}) {
        for (std::size_t at = 0; at < text->size(); ++at) {
            const auto byte = static_cast<unsigned char>((*text)[at]);
            const bool isC1 = byte == 0xC2 && at + 1 < text->size() &&
                              static_cast<unsigned char>((*text)[at + 1]) < 0xA0;
            if (byte < 0x20 || byte == 0x7F || isC1) {
                return true;
            }
        }
    }
    return false;
}

/// The category of many media types is wrapped, so that its value has line feeds.
bool isWrappedCategory(const LibcupsFact& fact) {
    return fact.keyword == "ZrMediaTypeCategory" &&
           fact.value.find_first_not_of("custom0123456789 \n") == std::string::npos;
}

/// A status with the given status' answer about duplexer and tray, and nothing else.
std::string accessoriesOf(const OrbCSDeviceStatus& status, FakeDeviceStatus::Values& values) {
    std::string answer;
    OrbCSDeviceAccessories accessories;
    const auto* const all =
        status.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    for (const OrbCSDeviceAccessory& each : all ? *all : OrbCSDeviceAccessories()) {
        if (each.name == kTkCSDeviceAccessoryDuplexer || each.name == kTkCSDeviceAccessoryTray2) {
            accessories.push_back(each);
            answer += *each.name + (each.isInstalled ? "+" : "-");
        }
    }
    if (all) {
        answer += ".";
        values.emplace(kTkCSDeviceAccessoriesKey, std::move(accessories));
    }
    return answer;
}

/// Whether the status names the duplexer twice with different answers. Updaters take the one or
/// the other of them, so that a PPD which gets its option with the one default in a first run gets
/// the other default in a second.
bool isOfTwoMindsAboutTheDuplexer(const OrbCSDeviceStatus& status) {
    const auto* const all =
        status.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    std::set<bool> answers;
    for (const OrbCSDeviceAccessory& each : all ? *all : OrbCSDeviceAccessories()) {
        if (each.name == kTkCSDeviceAccessoryDuplexer) {
            answers.insert(each.isInstalled);
        }
    }
    return answers.size() > 1;
}

std::size_t countOfMediaTypes(const OrbCSDeviceStatus& status) {
    const auto* const types =
        status.statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
    return types ? types->size() : 0;
}

std::vector<LibcupsFact> factsOf(const PPDText& text, const char* what) {
    std::string error;
    auto facts = libcupsReading(*text, error);
    if (!facts) {
        throw std::runtime_error(std::string(what) + ": libcups does not open it: " + error);
    }
    return *std::move(facts);
}

}  // namespace

UpdateUnderTest::UpdateUnderTest(PPDText text) : text_(std::move(text)) {
    if (!PPDModelFile::fileWithText(text_)) {
        throw std::runtime_error("the PPD does not parse");
    }
    (void)factsOf(text_, "the PPD before");
}

PPDText UpdateUnderTest::updated(const PPDText& text, const Status& status) {
    const auto file = PPDModelFile::fileWithText(text);
    if (!file) {
        return nullptr;
    }
    OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status, nullptr);
    const OrbPPDConcreteUpdatingManager manager;
    PPDText result = text;
    for (const auto& updater : manager.applicableUpdatersForPPDFile(file.get())) {
        PPDText next =
            updater->updatedPPDContentsForContents_deviceURI_context(result, "file:", &context);
        result = next ? std::move(next) : result;
    }
    return result;
}

const std::vector<LibcupsFact>& UpdateUnderTest::expectedWith(const OrbCSDeviceStatus& status) {
    FakeDeviceStatus::Values values;
    const std::string answer = accessoriesOf(status, values);
    const auto [entry, isNew] = expected_.try_emplace(answer);
    if (isNew) {
        const auto plain = std::make_shared<const FakeDeviceStatus>(std::move(values));
        entry->second = factsOf(updated(text_, plain), "the PPD without texts");
    }
    return entry->second;
}

void UpdateUnderTest::lookAtNewChoice(const LibcupsFact& fact, Names& choices, Outcome& outcome) {
    const bool isMedia = fact.keyword == "MediaType";
    ++(isMedia ? outcome.mediaTypes : outcome.profiles);
    if (isMedia && !choices.insert(fact.optionKeyword).second) {
        outcome.findings.push_back("a choice twice: " + fact.shown());
    }
    const std::string code =
        isMedia ? "<</MediaType(" + fact.optionKeyword + ")>>setpagedevice" : "";
    if (fact.value != code) {
        outcome.findings.push_back("foreign code: " + fact.shown());
    }
}

void UpdateUnderTest::look(const Facts& facts, const Facts& expected,
                           const OrbCSDeviceStatus& status, Outcome& outcome) {
    // What was there before, custom or not, has to be there; what is new is looked at alone.
    auto next = expected.begin();
    const auto skipOfPrinter = [&] {
        while (next != expected.end() && isOfPrinter(*next)) {
            ++next;
        }
    };
    Names choices;
    for (const LibcupsFact& fact : facts) {
        skipOfPrinter();
        if (next != expected.end() && *next == fact) {
            ++next;
            continue;
        }
        if (hasControlCharacter(fact) && !isWrappedCategory(fact)) {
            outcome.findings.push_back("a control character: " + fact.shown());
        }
        if (isOfPrinter(fact)) {
            continue;
        }
        if (!isOfCustomMedia(fact)) {
            outcome.findings.push_back("new or another: " + fact.shown());
            continue;
        }
        if (fact.kind == "choice") {
            lookAtNewChoice(fact, choices, outcome);
        }
    }
    skipOfPrinter();
    if (next != expected.end()) {
        outcome.findings.push_back("lost: " + next->shown());
    }
    if (outcome.mediaTypes != 0 && outcome.mediaTypes != countOfMediaTypes(status)) {
        outcome.findings.emplace_back("another number of media types than the printer has");
    }
}

void UpdateUnderTest::lookAtFurtherRuns(const PPDText& afterOneRun, const Status& status,
                                        Outcome& outcome) const {
    const auto without = std::make_shared<const StatusWithoutKey>(status, kTkCSCustomMediaTypesKey);
    PPDText after = afterOneRun;
    PPDText expected = updated(text_, without);
    if (isOfTwoMindsAboutTheDuplexer(*status)) {
        after = updated(after, status);
        expected = updated(expected, without);
    }
    const PPDText again = updated(after, status);
    if (!again || *again != *after) {
        outcome.findings.emplace_back("a further run changes it");
    }
    const PPDText back = updated(after, without);
    if (!back || *back != *expected) {
        outcome.findings.emplace_back("a run without media types does not take them back");
    }
    const auto file = PPDModelFile::fileWithText(after);
    const auto refusal = UpdateGuard::reasonNotToWrite(
        *after, *back, OrbPPDConcreteUpdatingManager().applicableUpdatersForPPDFile(file.get()));
    if (refusal) {
        outcome.findings.push_back("the guard refuses to take them back: " + *refusal);
    }
}

UpdateUnderTest::Outcome UpdateUnderTest::outcomeWith(const Status& status, Guard guard) {
    Outcome outcome;
    const PPDText after = updated(text_, status);
    const auto file = PPDModelFile::fileWithText(text_);
    outcome.refusal = UpdateGuard::reasonNotToWrite(
        *text_, *after, OrbPPDConcreteUpdatingManager().applicableUpdatersForPPDFile(file.get()));
    if (outcome.refusal && guard == Guard::on) {
        return outcome;
    }
    std::string error;
    const auto facts = libcupsReading(*after, error);
    if (!facts) {
        outcome.findings.push_back("libcups does not open it: " + error);
        return outcome;
    }
    look(*facts, expectedWith(*status), *status, outcome);
    lookAtFurtherRuns(after, status, outcome);
    return outcome;
}

}  // namespace TkPPDUpdating::Testing
