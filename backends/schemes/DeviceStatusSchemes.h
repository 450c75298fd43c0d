#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbCSError.h"
#include "core_interface/TkCommunicationServices.h"

namespace TkPPDUpdating {

/// The communication-services library of this project: hands a device URI to the backend that is
/// registered for its scheme. An application adds a scheme of its own with one call.
class DeviceStatusSchemes : public TkCommunicationServices {
  public:
    /// Obtains the status of the printer behind a URI of the scheme; null, and the cause and
    /// reason in `error`, when there is none. `parameters` may be null. May be
    /// called from several threads at once.
    using Backend = std::function<std::shared_ptr<const OrbCSDeviceStatus>(
        const std::string& deviceURI, const OrbDictionary* parameters, OrbCSError& error)>;

    /// Registers a backend for a scheme (RFC 3986, without the colon; case does not count),
    /// replacing an earlier one; null takes the scheme away. Not while a status is being obtained.
    void registerScheme(std::string_view scheme, Backend backend);

    /// The registered schemes, sorted, in lower case.
    std::vector<std::string> schemes() const;

    /// Null without a URI, for a URI without a scheme or with one that has no backend ("no backend
    /// for the scheme \"usb\""), or when the backend gives none.
    std::shared_ptr<const OrbCSDeviceStatus> deviceStatusWithURI_parameters_error(
        std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
        OrbCSError* error) const override;

  private:
    std::map<std::string, Backend, std::less<>> backends_;
};

}  // namespace TkPPDUpdating
