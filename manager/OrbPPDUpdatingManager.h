#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbPPDFile.h"
#include "manager/ITkPPDUpdater.h"
#include "manager/OrbClass.h"
#include "ppd/PPDText.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The library's entry: runs every applicable updater over a PPD and gives the text rewritten, or
/// the values that the updaters would write.
///
/// What reads PPDs and asks printers is set in `OrbCoreInterface` first. Every call runs to its end
/// on the caller's thread. A manager is for one thread at a time; several managers may run side by
/// side.
///
/// Failure is a null result, and its cause is not told. Besides, an operation passes on
/// `std::out_of_range` when an updater's look-up meets an attribute that ends at its colon; the
/// manager is then as it was. This class itself implements nothing: each of its operations raises
/// `OrbInvalidOperationError`.
class TKPPDUPDATING_PUBLIC OrbPPDUpdatingManager {
  public:
    OrbPPDUpdatingManager() = default;
    OrbPPDUpdatingManager(const OrbPPDUpdatingManager&) = delete;
    OrbPPDUpdatingManager& operator=(const OrbPPDUpdatingManager&) = delete;
    virtual ~OrbPPDUpdatingManager() = default;

    /// The shared manager, made on the first call; it lives as long as the process.
    static OrbPPDUpdatingManager& sharedInstance();

    /// The text of the PPD at `path` with the values of the device behind `deviceURI` (which may be
    /// absent; it is passed on unchecked), as UTF-8 bytes: the file's own bytes when nothing
    /// changed. Null when the file cannot be read, is not UTF-8 or cannot be parsed.
    virtual PPDText updatedPPDContentsForFile_deviceURI(const std::string& path,
                                                        std::optional<std::string_view> deviceURI);

    /// The text of the PPD at `path` with the values of the PPD installed for a print queue. Null
    /// when there is no queue name, the file cannot be read, is not UTF-8 or cannot be parsed, or
    /// the queue has no PPD.
    virtual PPDText updatedPPDContentsForFile_queueName(
        const std::string& path, const std::optional<std::string>& queueName);

    /// The values for the PPD of a queue from the device behind `deviceURI`, obtained in CUPS
    /// filter mode. Empty when no updater applies or has values; of two updaters with the same key,
    /// one wins. Nothing when there is no queue name or the queue has no PPD.
    virtual std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForQueueWithName_deviceURI(
        const std::optional<std::string>& queueName, std::optional<std::string_view> deviceURI);

    /// The values for a parsed PPD from a device status already obtained. Empty as above; nothing
    /// when status or PPD is null.
    virtual std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForDeviceStatus_deviceURI_PPDFile(
        std::shared_ptr<const OrbCSDeviceStatus> deviceStatus,
        std::optional<std::string_view> deviceURI, const OrbPPDFile* PPDFile);

    /// Adds a class for all later operations; adding it again changes nothing. True when it is
    /// registered now, false when it is null or does not fulfil `ITkPPDUpdater`. Not owned.
    virtual bool registerUpdaterClass(const OrbClass* updaterClass);

    /// Removes a class for all later operations; does nothing when it is not registered.
    virtual void unregisterUpdaterClass(const OrbClass* updaterClass);
};

}  // namespace TkPPDUpdating
