#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbDictionary.h"
#include "tools/Backends.h"

namespace TkPPDUpdating {

/// Asks the device that the options of a run name, and tells the user what came of it.
class DeviceInquiry {
  public:
    /// Adds --require-device to the subcommand and --device-uri to it or to a group of its options;
    /// gives the latter.
    CLI::Option* addTo(CLI::App& subcommand, CLI::App& group);

    const std::string& deviceURI() const { return deviceURI_; }

    /// Ends the command when the URI is a mistake (`refuseMistakenDeviceURI`).
    void refuseMistake(const Backends& backends) const;

    /// Whether a silent printer is the end of the run, or a warning.
    enum class Silence { isFailure, isWarning };

    /// Asks the device, if nobody has yet, and tells what was dropped of its answer. Null, with a
    /// warning about `place`, when it gives no status and that is none of `Silence::isFailure` and
    /// --require-device; these end the command with exit status 3.
    std::shared_ptr<const OrbCSDeviceStatus> status(const std::string& place,
                                                    const OrbDictionary& parameters,
                                                    Silence silence) const;

    /// Whether the device is asked even when no updater needs it.
    bool isRequired() const { return isRequired_; }

  private:
    std::string deviceURI_;
    bool isRequired_ = false;
};

}  // namespace TkPPDUpdating
