#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "manager/OrbPPDUpdatingManager.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Puts a class whose name is greater first.
///
/// Callers may not rely on the order in which updaters run. It is fixed all the same so that equal
/// input gives equal bytes, and it is this one because OrbPPDCustomMediaUpdater, which takes its
/// block away from the end of the text and adds it again, then comes after the others that add
/// lines there: a second run finds every line where it would put it.
struct OrbClassRunOrder {
    bool operator()(const OrbClass* left, const OrbClass* right) const {
        return left->name() != right->name() ? left->name() > right->name() : left < right;
    }  ///< Whether `left` runs first.
};

/// The only implementation of `OrbPPDUpdatingManager`. Made with the built-in updaters.
class TKPPDUPDATING_PUBLIC OrbPPDConcreteUpdatingManager : public OrbPPDUpdatingManager {
  public:
    using Classes = std::set<const OrbClass*, OrbClassRunOrder>;  ///< In the order of their runs.

    OrbPPDConcreteUpdatingManager();

    PPDText updatedPPDContentsForFile_deviceURI(const std::string& path,
                                                std::optional<std::string_view> deviceURI) override;
    PPDText updatedPPDContentsForFile_queueName(
        const std::string& path, const std::optional<std::string>& queueName) override;
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForQueueWithName_deviceURI(
        const std::optional<std::string>& queueName,
        std::optional<std::string_view> deviceURI) override;
    std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
        std::shared_ptr<const OrbCSDeviceStatus> deviceStatus,
        std::optional<std::string_view> deviceURI, const OrbPPDFile* PPDFile) override;
    bool registerUpdaterClass(const OrbClass* updaterClass) override;
    void unregisterUpdaterClass(const OrbClass* updaterClass) override;

    /// What `updatedPPDContentsForFile_deviceURI`, which calls it, does with a text that is already
    /// read (not null) and its parsed PPD. `context` may hold a status
    /// (`OrbPPDUpdatingContext::contextWithDeviceStatus_parameters`); no device is asked then.
    PPDText updatedPPDContentsForContents_PPDFile_deviceURI_context(
        PPDText contents, const OrbPPDFile& PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary context) const;

    /// The same for `updatedPPDContentsForFile_queueName`: null when the queue has no PPD.
    PPDText updatedPPDContentsForContents_PPDFile_queueName(PPDText contents,
                                                            const OrbPPDFile& PPDFile,
                                                            const std::string& queueName) const;

    /// The classes that later operations use.
    const Classes& registeredClasses() const { return registeredClasses_; }

    /// Fresh instances of the registered classes that apply to the PPD.
    std::vector<std::unique_ptr<ITkPPDUpdater>> applicableUpdatersForPPDFile(
        const OrbPPDFile* PPDFile) const;

    /// The whole file as text, or null when it cannot be read or is not valid UTF-8.
    static PPDText PPDContentsForFileAtPath(const std::string& path);

  private:
    void registerClasses();

    Classes registeredClasses_;
};

}  // namespace TkPPDUpdating
