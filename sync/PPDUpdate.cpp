#include "sync/PPDUpdate.h"

#include <set>
#include <utility>

#include "backends/schemes/DeviceStatusSchemes.h"
#include "core_interface/TkCSKeys.h"
#include "manager/ITkPPDStatusReading.h"
#include "manager/OrbClassTable.h"
#include "manager/OrbPPDToldRule.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "manager/StatusWithValue.h"
#include "sync/CustomMediaBlock.h"
#include "sync/FollowedDefaults.h"
#include "sync/StatusValueText.h"

namespace TkPPDUpdating {

namespace {

bool readsInstalledOptionsOnly(const ITkPPDUpdater& updater) {
    const auto* const reading = dynamic_cast<const ITkPPDStatusReading*>(&updater);
    return reading && reading->statusEntriesRead() ==
                          std::vector<std::string>{std::string(kTkCSInstalledOptionsKey)};
}

}  // namespace

PPDUpdate::PPDUpdate(std::unique_ptr<OrbPPDConcreteUpdatingManager> manager,
                     std::shared_ptr<const PPDModelFile> PPD, Defaults defaults)
    : manager_(std::move(manager)), PPD_(std::move(PPD)), defaults_(defaults) {
    countUpdaters();
    if (readsInstalledOptions_) {
        accessories_.emplace(*PPD_);
    }
}

void PPDUpdate::countUpdaters() {
    hasUpdaters_ = false;
    needsStatus_ = false;
    needsOtherStatus_ = false;
    readsInstalledOptions_ = false;
    for (const auto& updater : manager_->applicableUpdatersForPPDFile(PPD_.get())) {
        hasUpdaters_ = true;
        const bool readsStatus = OrbPPDToldRule::readsStatus(*updater);
        needsStatus_ = needsStatus_ || readsStatus;
        const bool isOfInstalledOptions = readsInstalledOptionsOnly(*updater);
        needsOtherStatus_ = needsOtherStatus_ || (readsStatus && !isOfInstalledOptions);
        readsInstalledOptions_ = readsInstalledOptions_ || isOfInstalledOptions;
    }
}

void PPDUpdate::leaveInstallableOptions() {
    manager_->unregisterUpdaterClass(OrbClassFromName("OrbPPDInstallableOptionsUpdater"));
    countUpdaters();
}

bool PPDUpdate::mayTellInstalledOptions(std::string_view deviceURI) {
    return DeviceStatusSchemes::schemeOfURI(deviceURI) == "file";
}

void PPDUpdate::setStatus(std::shared_ptr<const OrbCSDeviceStatus> status, Rule rule) {
    answer_ = status;
    status_ = std::move(status);
    takeOptionsOfAccessories();
    const auto told = OrbCSPartialStatus::toldEntriesOf(*status_);
    if (rule == Rule::whatWasNotToldStays && told) {
        leaveWhatWasNotTold(*told);
    }
    if (defaults_ == Defaults::keepTheirMeaning) {
        placeMediaTypes();
    }
}

void PPDUpdate::takeOptionsOfAccessories() {
    if (!accessories_ || !readsInstalledOptions_) {
        return;
    }
    const auto* const known = installedOptionsOf(*status_);
    OrbCSInstalledOptions installed;
    for (InstalledOptionAnswer& answer : accessories_->answersOfStatus(*status_)) {
        // What was said of the option itself counts.
        if (!known || !known->contains(answer.option)) {
            installed.emplace(answer.option, answer.after);
            answersOfAccessories_.push_back(std::move(answer));
        }
    }
    status_ = statusWithInstalledOptions(std::move(status_), std::move(installed));
    answer_ = status_;
}

void PPDUpdate::leaveWhatWasNotTold(const OrbCSToldEntries& told) {
    std::set<std::string> kept;
    OrbPPDUpdatingValues penValues;
    const auto classes = manager_->registeredClasses();
    for (const OrbClass* updaterClass : classes) {
        const auto updater = updaterClass->newInstance();
        if (!updater || !updater->isApplicableForPPDFile(PPD_.get())) {
            continue;
        }
        auto decision = OrbPPDToldRule::decision(*updater, told, *PPD_->text());
        penValues.merge(decision.completedPenValues);
        const bool canRun = decision.kind != OrbPPDToldDecision::Kind::keep &&
                            (!decision.completesMediaTypes || completeMediaTypes());
        if (!canRun) {
            manager_->unregisterUpdaterClass(updaterClass);
        }
        kept.insert(decision.notTold.begin(), decision.notTold.end());
    }
    // Most printers cannot tell it, and where one was asked, each option has its own reason.
    kept.erase(std::string(kTkCSInstalledOptionsKey));
    status_ = OrbPPDToldRule::completedStatus(std::move(status_), penValues);
    keptEntries_.assign(kept.begin(), kept.end());
}

const OrbCustomMediaTypes* PPDUpdate::mediaTypes() const {
    return status_->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
}

void PPDUpdate::setMediaTypes(OrbCustomMediaTypes types) {
    status_ = std::make_shared<const StatusWithValue>(std::move(status_), kTkCSCustomMediaTypesKey,
                                                      std::move(types));
}

bool PPDUpdate::completeMediaTypes() {
    const auto* const types = mediaTypes();
    auto completed =
        completedMediaTypes(customMediaBlock(*PPD_), types ? *types : OrbCustomMediaTypes());
    if (!completed) {
        return false;
    }
    setMediaTypes(*std::move(completed));
    return true;
}

void PPDUpdate::placeMediaTypes() {
    if (const auto* const types = mediaTypes()) {
        setMediaTypes(inEarlierPlaces(customMediaBlock(*PPD_), *types));
    }
}

std::string PPDUpdate::wordsForKeptEntries(const std::vector<std::string>& entries) {
    std::string words;
    for (const std::string& entry : entries) {
        words += words.empty() ? "kept: " : ", ";
        words += statusEntryWords(entry);
    }
    return words.empty() ? words : words + ", which the printer did not tell";
}

PPDText PPDUpdate::updatedText(std::optional<std::string_view> deviceURI) {
    return withFollowedDefaults(manager_->updatedPPDContentsForContents_PPDFile_deviceURI_context(
        PPD_->text(), *PPD_, deviceURI,
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status_, nullptr)));
}

ExplainedPPDUpdate PPDUpdate::explainedText(std::optional<std::string_view> deviceURI) {
    ExplainedPPDUpdate update = explainedPPDUpdate(*manager_, *PPD_, deviceURI, {answer_, status_});
    PPDText followed = withFollowedDefaults(update.text);
    if (*followed != *update.text) {
        update.steps.push_back(stepBetween("tkppdupdate", *update.text, *followed));
        update.text = std::move(followed);
    }
    return update;
}

PPDText PPDUpdate::withFollowedDefaults(PPDText text) {
    if (defaults_ == Defaults::areAsWritten) {
        return text;
    }
    FollowedDefaults followed = defaultsFollowingMediaTypes(*PPD_, std::move(text));
    notes_ = std::move(followed.notes);
    return followed.text;
}

std::optional<OrbPPDUpdatingValues> PPDUpdate::updatingValues(
    std::optional<std::string_view> deviceURI) const {
    return manager_->PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(status_, deviceURI,
                                                                        PPD_.get());
}

}  // namespace TkPPDUpdating
