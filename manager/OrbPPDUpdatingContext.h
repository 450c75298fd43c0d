#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbDictionary.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Makes updating contexts and reads the device status out of them.
///
/// A context lives for one manager operation and stands for one device: its status is obtained at
/// most once and shared by all updaters of the run.
class TKPPDUPDATING_PUBLIC OrbPPDUpdatingContext {
  public:
    OrbPPDUpdatingContext() = delete;

    /// A copy of `parameters` (empty when null), holding `deviceStatus` when that is not null.
    static OrbDictionary contextWithDeviceStatus_parameters(
        std::shared_ptr<const OrbCSDeviceStatus> deviceStatus, const OrbDictionary* parameters);

    /// The status that the context holds, whatever the URI; otherwise the status of the device
    /// behind the URI, obtained with the context as parameters and kept in it. Null, and nothing
    /// kept, when there is none. With a null context nothing is looked up or kept.
    static std::shared_ptr<const OrbCSDeviceStatus> deviceStatusForURI_inContext(
        std::optional<std::string_view> deviceURI, OrbDictionary* context);
};

}  // namespace TkPPDUpdating
