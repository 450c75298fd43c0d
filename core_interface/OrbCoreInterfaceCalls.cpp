// The class operations that the libraries serve that an application has set. They stand here
// because those libraries' interfaces know all of these classes: no class knows the libraries.
#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCUPSICCProfileSpecifier.h"
#include "core_interface/OrbCoreInterface.h"
#include "core_interface/OrbCustomMediaType.h"
#include "core_interface/OrbICCProfile.h"
#include "core_interface/OrbPPDFile.h"

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

std::shared_ptr<const OrbCUPSICCProfileSpecifier>
OrbCUPSICCProfileSpecifier::specifierVer2WithProfileID(std::uint64_t profileID) {
    const auto core = OrbCoreInterface::core();
    return core ? core->specifierVer2WithProfileID(profileID) : nullptr;
}

std::shared_ptr<const OrbCustomMediaType> OrbCustomMediaType::customMediaTypeWithPPDParameters(
    const OrbDictionary& parameters) {
    const auto core = OrbCoreInterface::core();
    return core ? core->customMediaTypeWithPPDParameters(parameters) : nullptr;
}

std::shared_ptr<const OrbICCProfile> OrbICCProfile::profileWithPPDParameters(
    const OrbDictionary& parameters) {
    const auto core = OrbCoreInterface::core();
    return core ? core->profileWithPPDParameters(parameters) : nullptr;
}

std::shared_ptr<const OrbPPDFile> OrbPPDFile::PPDFileWithContentsOfFile(const std::string& path) {
    const auto core = OrbCoreInterface::core();
    return core ? core->PPDFileWithContentsOfFile(path) : nullptr;
}

std::shared_ptr<const OrbPPDFile> OrbPPDFile::PPDFileWithContents(const PPDText& contents,
                                                                  const std::string& path) {
    const auto core = OrbCoreInterface::core();
    return core ? core->PPDFileWithContents(contents, path) : nullptr;
}

std::shared_ptr<const OrbPPDFile> OrbPPDFile::PPDFileForQueueWithName(
    const std::string& queueName) {
    const auto core = OrbCoreInterface::core();
    return core ? core->PPDFileForQueueWithName(queueName) : nullptr;
}

}  // namespace TkPPDUpdating
