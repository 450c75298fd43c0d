#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "core_interface/OrbCSError.h"
#include "manager/OrbClass.h"
#include "sync/QueueScheduler.h"
#include "tools/AddedModules.h"
#include "tools/OneAnswerServices.h"

namespace TkPPDUpdating {

/// The one place of the tool that says which backend serves what: makes those that it was built
/// with and puts them behind the core interface.
class Backends {
  public:
    /// Sets them in `OrbCoreInterface`.
    Backends();

    /// Lets the modules of others take part in the run (`AddedModules::load`). Before anything else
    /// is asked.
    void loadModules(const std::vector<std::string>& paths) {
        addedModules_.load(paths, *schemes_);
    }

    /// The updater classes that modules have brought.
    const std::vector<const OrbClass*>& addedUpdaterClasses() const {
        return addedModules_.updaterClasses();
    }

#ifdef TKPPDUPDATING_WITH_CUPS
    /// The scheduler of that name, the machine's own for an empty one. `isCancelled` ends all talks
    /// when anybody sets it; null for never, else it outlives the scheduler. Null, with the reason
    /// (one phrase) in `error`, when the module that talks to it cannot be loaded.
    static std::unique_ptr<const QueueScheduler> scheduler(const std::string& server,
                                                           const std::atomic<bool>* isCancelled,
                                                           std::string& error);
#endif

    /// Who asks PostScript printers behind "socket" URIs the questions of a PPD
    /// (`kTkCSPostScriptQuestionsKey`): not among the schemes, since only a user can know that it
    /// is a PostScript printer.
    static std::shared_ptr<const TkCommunicationServices> postScriptPrinters();

    const PPDModelCore& core() const {
        return *core_;
    }
    const OneAnswerServices& devices() const {
        return *devices_;
    }

    /// What is wrong with a device URI that a user gave, and not with the printer: it has no scheme
    /// or an unknown one, cannot be taken apart, or names a recording that is not there, cannot be
    /// read or is malformed. Nothing otherwise; no printer is asked.
    std::optional<OrbCSError> mistakeInDeviceURI(const std::string& deviceURI) const;

  private:
    std::shared_ptr<const PPDModelCore> core_;
    std::shared_ptr<DeviceStatusSchemes> schemes_;
    std::shared_ptr<const OneAnswerServices> devices_;
    AddedModules addedModules_;
};

}  // namespace TkPPDUpdating
