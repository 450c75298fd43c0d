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
#include "tests/hostile/FactComparison.h"
#include "tests/hostile/UpdateInvariants.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {

namespace {

using Status = std::shared_ptr<const OrbCSDeviceStatus>;

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

UpdateUnderTest::UpdateUnderTest(PPDText text) : text_(std::move(text)), invariants_(*text_) {
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

void UpdateUnderTest::look(const Facts& facts, const Facts& expected,
                           const OrbCSDeviceStatus& status, Outcome& outcome) {
    // What was there before, custom or not, has to be there; what is new is looked at alone.
    const auto difference =
        differenceOfFacts(expected, facts, {isOfPrinter, {}, [](const LibcupsFact& fact) {
                                                return isOfPrinter(fact) || isOfCustomMedia(fact);
                                            }});
    outcome.findings.insert(outcome.findings.end(), difference.findings.begin(),
                            difference.findings.end());
    outcome.mediaTypes = difference.mediaTypes;
    outcome.profiles = difference.profiles;
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
    if (!outcome.refusal) {
        const auto findings = invariants_.findingsIn(*after);
        outcome.findings.insert(outcome.findings.end(), findings.begin(), findings.end());
    }
    lookAtFurtherRuns(after, status, outcome);
    return outcome;
}

}  // namespace TkPPDUpdating::Testing
