#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSError.h"
#include "core_interface/OrbDictionary.h"
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

    /// Leaves the installable options alone in an update for which the device is not asked about
    /// them.
    void limit(PPDUpdate& update) const;

    /// Whether the device is asked even when no updater needs it.
    bool isRequired() const { return isRequired_; }

  private:
    std::shared_ptr<const OrbCSDeviceStatus> answerToQuestions(const std::string& place,
                                                               const PPDModelFile& PPD,
                                                               OrbDictionary parameters,
                                                               OrbCSError& error) const;

    std::string deviceURI_;
    bool asksPostScript_ = false;
    bool isRequired_ = false;
};

}  // namespace TkPPDUpdating
