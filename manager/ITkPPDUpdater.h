#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "core_interface/OrbDictionary.h"
#include "core_interface/OrbPPDFile.h"
#include "ppd/PPDText.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Values that updaters would write into a PPD, by a key that each updater defines (for example
/// "DefaultZrPenConfig" or "BPECalibrationDue").
using OrbPPDUpdatingValues = std::map<std::string, std::string, std::less<>>;

/// The contract between the manager and an updater.
///
/// Callers: make a fresh instance for every run, ask `isApplicableForPPDFile` first, and run only
/// an instance that says yes. Arguments are not owned by the updater and valid for the call only.
///
/// Implementers: derive publicly from this class (that is how a class declares that it fulfils the
/// contract) and have a plain constructor. Keep nothing from one PPD to the next. Null or nothing
/// as a result means no change or no values; failures of the device or the data end so, too. An
/// updater may read the context and add entries, which the updaters after it see; it must not
/// remove the status. The order in which updaters run is not defined.
class TKPPDUPDATING_PUBLIC ITkPPDUpdater {
  public:
    ITkPPDUpdater() = default;
    ITkPPDUpdater(const ITkPPDUpdater&) = delete;
    ITkPPDUpdater& operator=(const ITkPPDUpdater&) = delete;
    virtual ~ITkPPDUpdater() = default;

    /// Whether the updater has anything to do for the PPD; a null PPD gives false.
    virtual bool isApplicableForPPDFile(const OrbPPDFile* PPDFile) = 0;

    /// The whole updated text, or null when it changes nothing. The values come from the device
    /// behind `deviceURI`, which may be absent.
    virtual PPDText updatedPPDContentsForContents_deviceURI_context(
        const PPDText& contents, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) = 0;

    /// The same; the values come from `PPDFile`, the parsed PPD of a print queue, which may be
    /// null.
    virtual PPDText updatedPPDContentsForContents_PPDFile_context(const PPDText& contents,
                                                                  const OrbPPDFile* PPDFile,
                                                                  OrbDictionary* context) = 0;

    /// The values that the updater would write, or nothing when it has none to tell.
    virtual std::optional<OrbPPDUpdatingValues> PPDUpdatingValuesForPPDFile_deviceURI_context(
        const OrbPPDFile* PPDFile, std::optional<std::string_view> deviceURI,
        OrbDictionary* context) = 0;
};

}  // namespace TkPPDUpdating
