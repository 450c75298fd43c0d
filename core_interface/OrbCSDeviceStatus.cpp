#include "core_interface/OrbCSDeviceStatus.h"

#include "core_interface/OrbCoreInterface.h"

namespace TkPPDUpdating {

std::shared_ptr<const OrbCSDeviceStatus> OrbCSDeviceStatus::deviceStatusWithURI_parameters_error(
    std::optional<std::string_view> deviceURI, const OrbDictionary* parameters, OrbCSError* error) {
    const auto services = OrbCoreInterface::communicationServices();
    if (services) {
        return services->deviceStatusWithURI_parameters_error(deviceURI, parameters, error);
    }
    if (error) {
        *error = {OrbCSError::Cause::noBackend, "no communication-services library is set"};
    }
    return nullptr;
}

}  // namespace TkPPDUpdating
