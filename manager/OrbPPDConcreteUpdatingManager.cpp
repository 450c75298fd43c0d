#include "manager/OrbPPDConcreteUpdatingManager.h"

#include <utility>

#include "core_interface/TkCSKeys.h"
#include "manager/OrbClassTable.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "ppd/PPDTextFile.h"

namespace TkPPDUpdating {

namespace {

using Updaters = std::vector<std::unique_ptr<ITkPPDUpdater>>;

/// Hands the text from updater to updater; `update` asks one of them and gives null for no change.
/// Each updater is gone, with all that it built, before the next one runs; so is a text that it
/// replaced.
template <typename Update>
PPDText chainedText(PPDText text, Updaters updaters, const Update& update) {
    for (auto& updater : updaters) {
        if (PPDText updated = update(*updater, text)) {
            text = std::move(updated);
        }
        updater.reset();
    }
    return text;
}

OrbPPDUpdatingValues collectedValues(Updaters updaters, const OrbPPDFile* PPDFile,
                                     std::optional<std::string_view> deviceURI,
                                     OrbDictionary& context) {
    OrbPPDUpdatingValues values;
    for (auto& updater : updaters) {
        auto more =
            updater->PPDUpdatingValuesForPPDFile_deviceURI_context(PPDFile, deviceURI, &context);
        if (more) {
            more->merge(values);  // keeps its own entry where both have one: the later updater wins
            values = std::move(*more);
        }
        updater.reset();
    }
    return values;
}

OrbDictionary filterModeParameters() {
    return {{std::string(kTkCSIsCUPSFilterModeKey), true}};
}

}  // namespace

OrbPPDConcreteUpdatingManager::OrbPPDConcreteUpdatingManager() {
    registerClasses();
}

void OrbPPDConcreteUpdatingManager::registerClasses() {
    for (const OrbClass* builtIn : OrbClassTable()) {
        OrbPPDConcreteUpdatingManager::registerUpdaterClass(builtIn);
    }
}

bool OrbPPDConcreteUpdatingManager::registerUpdaterClass(const OrbClass* updaterClass) {
    if (!updaterClass || !updaterClass->conformsToITkPPDUpdater()) {
        return false;
    }
    registeredClasses_.insert(updaterClass);
    return true;
}

void OrbPPDConcreteUpdatingManager::unregisterUpdaterClass(const OrbClass* updaterClass) {
    if (updaterClass) {
        registeredClasses_.erase(updaterClass);
    }
}

std::vector<std::unique_ptr<ITkPPDUpdater>>
OrbPPDConcreteUpdatingManager::applicableUpdatersForPPDFile(const OrbPPDFile* PPDFile) const {
    Updaters applicable;
    applicable.reserve(registeredClasses_.size());
    for (const OrbClass* updaterClass : registeredClasses_) {
        auto updater = updaterClass->newInstance();
        if (updater && updater->isApplicableForPPDFile(PPDFile)) {
            applicable.push_back(std::move(updater));
        }
    }
    return applicable;
}

PPDText OrbPPDConcreteUpdatingManager::PPDContentsForFileAtPath(const std::string& path) {
    return PPDTextWithContentsOfFile(path);
}

PPDText OrbPPDConcreteUpdatingManager::updatedPPDContentsForFile_deviceURI(
    const std::string& path, std::optional<std::string_view> deviceURI) {
    PPDText contents = PPDContentsForFileAtPath(path);
    const auto PPDFile = contents ? OrbPPDFile::PPDFileWithContents(contents, path) : nullptr;
    return PPDFile ? updatedPPDContentsForContents_PPDFile_deviceURI_context(
                         std::move(contents), *PPDFile, deviceURI, {})
                   : nullptr;
}

PPDText OrbPPDConcreteUpdatingManager::updatedPPDContentsForContents_PPDFile_deviceURI_context(
    PPDText contents, const OrbPPDFile& PPDFile, std::optional<std::string_view> deviceURI,
    OrbDictionary context) const {
    return chainedText(std::move(contents), applicableUpdatersForPPDFile(&PPDFile),
                       [&](ITkPPDUpdater& updater, const PPDText& text) {
                           return updater.updatedPPDContentsForContents_deviceURI_context(
                               text, deviceURI, &context);
                       });
}

PPDText OrbPPDConcreteUpdatingManager::updatedPPDContentsForFile_queueName(
    const std::string& path, const std::optional<std::string>& queueName) {
    PPDText contents = queueName ? PPDContentsForFileAtPath(path) : nullptr;
    const auto PPDFile = contents ? OrbPPDFile::PPDFileWithContents(contents, path) : nullptr;
    return PPDFile ? updatedPPDContentsForContents_PPDFile_queueName(std::move(contents), *PPDFile,
                                                                     *queueName)
                   : nullptr;
}

PPDText OrbPPDConcreteUpdatingManager::updatedPPDContentsForContents_PPDFile_queueName(
    PPDText contents, const OrbPPDFile& PPDFile, const std::string& queueName) const {
    auto updaters = applicableUpdatersForPPDFile(&PPDFile);
    const auto queuePPDFile = OrbPPDFile::PPDFileForQueueWithName(queueName);
    if (!queuePPDFile) {
        return nullptr;
    }
    OrbDictionary context;
    return chainedText(std::move(contents), std::move(updaters),
                       [&](ITkPPDUpdater& updater, const PPDText& text) {
                           return updater.updatedPPDContentsForContents_PPDFile_context(
                               text, queuePPDFile.get(), &context);
                       });
}

std::optional<OrbPPDUpdatingValues>
OrbPPDConcreteUpdatingManager::PPDUpdatingValuesForQueueWithName_deviceURI(
    const std::optional<std::string>& queueName, std::optional<std::string_view> deviceURI) {
    const auto PPDFile = queueName ? OrbPPDFile::PPDFileForQueueWithName(*queueName) : nullptr;
    if (!PPDFile) {
        return std::nullopt;
    }
    OrbDictionary context = filterModeParameters();
    return collectedValues(applicableUpdatersForPPDFile(PPDFile.get()), PPDFile.get(), deviceURI,
                           context);
}

std::optional<OrbPPDUpdatingValues>
OrbPPDConcreteUpdatingManager::PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
    std::shared_ptr<const OrbCSDeviceStatus> deviceStatus,
    std::optional<std::string_view> deviceURI, const OrbPPDFile* PPDFile) {
    if (!deviceStatus || !PPDFile) {
        return std::nullopt;
    }
    const OrbDictionary parameters = filterModeParameters();
    OrbDictionary context = OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::move(deviceStatus), &parameters);
    return collectedValues(applicableUpdatersForPPDFile(PPDFile), PPDFile, deviceURI, context);
}

}  // namespace TkPPDUpdating
