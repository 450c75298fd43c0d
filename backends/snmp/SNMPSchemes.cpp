#include "backends/snmp/SNMPSchemes.h"

#include <memory>
#include <span>
#include <string>

#include "backends/schemes/RequestParameters.h"
#include "backends/snmp/SNMPPrinterRequest.h"
#include "core_interface/OrbCSOptionQuestions.h"

namespace TkPPDUpdating {

void registerSNMPDeviceStatus(DeviceStatusSchemes& schemes, const SNMPDeviceStatusLimits& limits) {
    using Questions = std::shared_ptr<const OrbCSSNMPQuestions>;
    schemes.registerScheme("snmp", [limits](const std::string& deviceURI,
                                            const OrbDictionary* parameters, OrbCSError& error) {
        const auto time = requestTime(parameters, limits.time, limits.filterModeTime);
        const auto* const questions =
            requestParameter<Questions>(parameters, kTkCSSNMPQuestionsKey);
        return statusOfSNMPPrinter(
            deviceURI, limits, time,
            questions && *questions ? std::span<const OrbCSObjectQuestion>((*questions)->questions)
                                    : std::span<const OrbCSObjectQuestion>(),
            error);
    });
}

}  // namespace TkPPDUpdating
