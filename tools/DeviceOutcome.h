#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbDictionary.h"
#include "tools/OneAnswerServices.h"

namespace TkPPDUpdating {

/// The device of a run: the options that name it, and what the user is told of its answer.
class DeviceOutcome {
  public:
    /// Adds --require-device to the subcommand and --device-uri to it or to a group of its options;
    /// gives the latter.
    CLI::Option* addTo(CLI::App& subcommand, CLI::App& group);

    const std::string& deviceURI() const { return deviceURI_; }

    /// Asks the device, if nobody has yet; null when it gives no status.
    std::shared_ptr<const OrbCSDeviceStatus> status(const OrbDictionary& parameters) const;

    /// What kept the device from giving a status, for a diagnostic.
    std::string reasonForSilence(const OneAnswerServices& devices) const;

    /// Tells what the run met, to be called when there is a result about `place`: a warning for a
    /// device that was asked and gave no status, and for each text of a status that was dropped.
    /// With --require-device the device is asked now if no updater needed it, and its silence is a
    /// `Failure`. Without a device URI it does nothing.
    void report(const std::string& place, const OneAnswerServices& devices,
                const OrbDictionary& parameters) const;

    bool isRequired() const { return isRequired_; }

  private:
    std::string deviceURI_;
    bool isRequired_ = false;
};

}  // namespace TkPPDUpdating
