#include "backends/cups/IPPDeviceStatus.h"

#include <any>
#include <memory>

#include "backends/cups/IPPPrinterRequest.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

namespace {

bool isCUPSFilterMode(const OrbDictionary* parameters) {
    if (!parameters) {
        return false;
    }
    const auto entry = parameters->find(kTkCSIsCUPSFilterModeKey);
    const bool* value = entry == parameters->end() ? nullptr : std::any_cast<bool>(&entry->second);
    return value && *value;
}

}  // namespace

void registerCUPSDeviceStatus(DeviceStatusSchemes& schemes, const IPPDeviceStatusLimits& limits) {
    for (const char* scheme : {"ipp", "ipps", "dnssd"}) {
        schemes.registerScheme(
            scheme,
            [limits](const std::string& deviceURI, const OrbDictionary* parameters,
                     OrbCSError& error) {
                const auto time =
                    isCUPSFilterMode(parameters) ? limits.filterModeTime : limits.time;
                return IPPPrinterRequest(limits, time).statusOfPrinter(deviceURI, error);
            },
            IPPPrinterRequest::errorInURI);
    }
}

}  // namespace TkPPDUpdating
