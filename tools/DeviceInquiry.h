#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSError.h"
#include "core_interface/OrbCSOptionQuestions.h"
#include "core_interface/OrbDictionary.h"
#include "sync/InstalledOptionAnswers.h"
#include "sync/PPDUpdate.h"
#include "tools/Backends.h"

namespace TkPPDUpdating {

/// Asks the device that the options of a run name, and tells the user what came of it.
class DeviceInquiry {
  public:
    /// Adds --require-device and --ask-postscript to the subcommand and --device-uri to it or to a
    /// group of its options; gives the latter.
    CLI::Option* addTo(CLI::App& subcommand, CLI::App& group);

    const std::string& deviceURI() const { return deviceURI_; }

    /// Ends the command when the URI is a mistake (`refuseMistakenDeviceURI`), or is not that of a
    /// printer that --ask-postscript can ask.
    void refuseMistake(const Backends& backends) const;

    /// Whether a silent printer is the end of the run, or a warning.
    enum class Silence { isFailure, isWarning };

    /// Asks the device, if nobody has yet, and tells what was dropped of its answer. Null, with a
    /// warning about `place`, when it gives no status and that is none of `Silence::isFailure` and
    /// --require-device; these end the command with exit status 3.
    ///
    /// With --ask-postscript it is asked the questions of the PPD, and what it answered is told.
    std::shared_ptr<const OrbCSDeviceStatus> status(const std::string& place,
                                                    const OrbDictionary& parameters,
                                                    Silence silence, const PPDModelFile& PPD) const;

    /// Leaves the installable options alone in an update of that PPD when the device cannot tell
    /// about them.
    void limit(PPDUpdate& update, const PPDModelFile& PPD) const;

    /// Tells the user what came of asking about installable options.
    static void tell(const std::string& place, const std::vector<InstalledOptionAnswer>& answers);

    /// Whether the device is asked even when no updater needs it.
    bool isRequired() const { return isRequired_; }

  private:
    std::shared_ptr<const OrbCSDeviceStatus> statusOverPostScript(const std::string& place,
                                                                  const PPDModelFile& PPD,
                                                                  OrbDictionary parameters,
                                                                  OrbCSError& error) const;
    std::shared_ptr<const OrbCSDeviceStatus> usualStatus(const std::string& place,
                                                         const PPDModelFile& PPD,
                                                         OrbDictionary parameters,
                                                         OrbCSError& error) const;
    std::shared_ptr<const OrbCSSNMPQuestions> objectQuestions(const PPDModelFile& PPD) const;

    std::string deviceURI_;
    bool asksPostScript_ = false;
    bool isRequired_ = false;
};

}  // namespace TkPPDUpdating
