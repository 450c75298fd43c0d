#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbCSError.h"
#include "core_interface/OrbDictionary.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The communication-services library as the application supplies it: what stands behind
/// `OrbCSDeviceStatus::deviceStatusWithURI_parameters_error`.
///
/// Implementers: `deviceURI` and `parameters` may be absent. Answer null on failure, with the
/// cause and reason in `*error` when `error` is not null, and raise nothing. The operation may be
/// called from several threads when the application runs several managers.
class TKPPDUPDATING_PUBLIC TkCommunicationServices {
  public:
    virtual ~TkCommunicationServices() = default;

    virtual std::shared_ptr<const OrbCSDeviceStatus> deviceStatusWithURI_parameters_error(
        std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
        OrbCSError* error) const = 0;  ///< Behind the operation of `OrbCSDeviceStatus`.
};

}  // namespace TkPPDUpdating
