#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "core_interface/OrbDictionary.h"
#include "core_interface/TkCSKeys.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "ppd/PPDText.h"
#include "tests/support/ParsedPPD.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {

/// The text behind a result, or nothing for null, in a form that test messages can print.
inline std::optional<std::string> textOf(const PPDText& contents) {
    return contents ? std::optional(*contents) : std::nullopt;
}

/// A context that holds a device with these accessories, in this order.
inline OrbDictionary contextWithAccessories(OrbCSDeviceAccessories accessories) {
    FakeDeviceStatus::Values values;
    values.emplace(kTkCSDeviceAccessoriesKey, std::move(accessories));
    return OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::make_shared<FakeDeviceStatus>(std::move(values)), nullptr);
}

/// A context that holds a device with a pens configuration of this code name.
inline OrbDictionary contextWithPens(std::optional<std::string> codeName) {
    FakeDeviceStatus::Values values;
    values.emplace(kTkCSInstalledPensConfigurationKey,
                   OrbCSPensConfiguration{std::move(codeName), {}});
    return OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::make_shared<FakeDeviceStatus>(std::move(values)), nullptr);
}

/// A context that holds a device which reports nothing.
inline OrbDictionary contextWithSilentDevice() {
    return OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::make_shared<FakeDeviceStatus>(), nullptr);
}

}  // namespace TkPPDUpdating::Testing
