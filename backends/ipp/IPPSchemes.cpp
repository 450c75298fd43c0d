#include "backends/ipp/IPPSchemes.h"

#include <string>

#include "backends/ipp/IPPPrinterRequest.h"
#include "backends/schemes/RequestParameters.h"

namespace TkPPDUpdating {

void registerIPPDeviceStatus(DeviceStatusSchemes& schemes, const IPPDeviceStatusLimits& limits) {
    for (const char* scheme : {"ipp", "ipps", "dnssd"}) {
        schemes.registerScheme(
            scheme,
            [limits](const std::string& deviceURI, const OrbDictionary* parameters,
                     OrbCSError& error) {
                const auto time = requestTime(parameters, limits.time, limits.filterModeTime);
                return statusOfIPPPrinter(deviceURI, limits, time, error);
            },
            errorInURIOfIPPPrinter);
    }
}

}  // namespace TkPPDUpdating
