#include "backends/postscript/PostScriptSchemes.h"

#include <memory>
#include <string>

#include "backends/postscript/PostScriptInquiry.h"
#include "backends/schemes/RequestParameters.h"
#include "core_interface/OrbCSOptionQuestions.h"

namespace TkPPDUpdating {

void registerPostScriptDeviceStatus(DeviceStatusSchemes& schemes, const PostScriptLimits& limits) {
    using Questions = std::shared_ptr<const OrbCSPostScriptQuestions>;
    schemes.registerScheme(
        "socket",
        [limits](const std::string& deviceURI, const OrbDictionary* parameters,
                 OrbCSError& error) -> std::shared_ptr<const OrbCSDeviceStatus> {
            const auto* const questions =
                requestParameter<Questions>(parameters, kTkCSPostScriptQuestionsKey);
            if (!questions || !*questions) {
                error = {OrbCSError::Cause::noBackend, "there is nothing to ask over PostScript"};
                return nullptr;
            }
            PostScriptLimits ofRequest = limits;
            ofRequest.time = requestTime(parameters, limits.time, limits.questionTime);
            return PostScriptInquiry(ofRequest, **questions).statusOfPrinter(deviceURI, error);
        });
}

}  // namespace TkPPDUpdating
