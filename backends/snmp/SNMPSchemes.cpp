#include "backends/snmp/SNMPSchemes.h"

#include <string>

#include "backends/schemes/RequestParameters.h"
#include "backends/snmp/SNMPPrinterRequest.h"

namespace TkPPDUpdating {

void registerSNMPDeviceStatus(DeviceStatusSchemes& schemes, const SNMPDeviceStatusLimits& limits) {
    schemes.registerScheme("snmp", [limits](const std::string& deviceURI,
                                            const OrbDictionary* parameters, OrbCSError& error) {
        const auto time = requestTime(parameters, limits.time, limits.filterModeTime);
        return statusOfSNMPPrinter(deviceURI, limits, time, error);
    });
}

}  // namespace TkPPDUpdating
