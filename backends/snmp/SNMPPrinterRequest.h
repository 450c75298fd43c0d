#pragma once

#include <chrono>
#include <memory>
#include <span>
#include <string>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "backends/snmp/SNMPDeviceStatusLimits.h"
#include "core_interface/OrbCSError.h"
#include "core_interface/OrbCSOptionQuestions.h"

namespace TkPPDUpdating {

/// Asks one printer for the tables that the status mapping wants to know, and for the objects that
/// questions of a PPD name, each by itself. Null, with the cause and the reason in `error`, when
/// there is no status within the time.
std::shared_ptr<const ReportedDeviceStatus> statusOfSNMPPrinter(
    const std::string& deviceURI, const SNMPDeviceStatusLimits& limits,
    std::chrono::milliseconds time, std::span<const OrbCSObjectQuestion> questions,
    OrbCSError& error);

}  // namespace TkPPDUpdating
