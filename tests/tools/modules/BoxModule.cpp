// A module with a scheme, for AddedModules_test.cpp and docs/adding-a-scheme.md: every box that the
// URI names has a duplexer.
#include <TkPPDUpdating/backends/modules/TkPPDUpdatingModule.h>
#include <TkPPDUpdating/backends/schemes/DeviceStatusSchemes.h>
#include <TkPPDUpdating/backends/schemes/ReportedDeviceStatus.h>
#include <TkPPDUpdating/core_interface/TkCSKeys.h>

#include <atomic>
#include <memory>
#include <string>

namespace {

using namespace TkPPDUpdating;

std::shared_ptr<const OrbCSDeviceStatus> statusOfBox(const std::string& deviceURI,
                                                     const OrbDictionary* /*parameters*/,
                                                     OrbCSError& error) {
    if (deviceURI == "box:empty") {
        error = {OrbCSError::Cause::noConnection, "the box is empty"};
        return nullptr;
    }
    ReportedDeviceStatus::Values values;
    values.emplace(kTkCSDeviceAccessoriesKey, OrbCSDeviceAccessories{{"Duplexer", true}});
    return std::make_shared<const ReportedDeviceStatus>(std::move(values));
}

}  // namespace

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .registerSchemes = [](DeviceStatusSchemes& schemes, const std::atomic<bool>* /*isCancelled*/) {
        schemes.registerScheme("box", statusOfBox);
    }};
