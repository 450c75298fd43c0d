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
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The communication-services library of this project: hands a device URI to the backend that is
/// registered for its scheme. An application adds a scheme of its own with one call.
class TKPPDUPDATING_PUBLIC DeviceStatusSchemes : public TkCommunicationServices {
  public:
    /// Obtains the status of the printer behind a URI of the scheme; null, and the cause and
    /// reason in `error`, when there is none. `parameters` may be null. May be
    /// called from several threads at once.
    using Backend = std::function<std::shared_ptr<const OrbCSDeviceStatus>(
        const std::string& deviceURI, const OrbDictionary* parameters, OrbCSError& error)>;

    /// Says what is wrong with a URI of the scheme, without asking the printer; nothing when it may
    /// be asked.
    using URICheck = std::function<std::optional<OrbCSError>(const std::string& deviceURI)>;

    /// Registers a backend for a scheme (RFC 3986, without the colon; case does not count),
    /// replacing an earlier one; null takes the scheme away. `check` may be null. Not while a
    /// status is being obtained.
    void registerScheme(std::string_view scheme, Backend backend, URICheck check = nullptr);

    /// What is wrong with a device URI whatever the printer would say: it has no scheme, the scheme
    /// has no backend, or the scheme's check refuses it. Nothing when the printer may be asked.
    std::optional<OrbCSError> errorInURI(std::string_view deviceURI) const;

    /// The scheme of a URI (RFC 3986, section 3.1) in lower case; nothing when it has none.
    static std::optional<std::string> schemeOfURI(std::string_view URI);

    /// The registered schemes, sorted, in lower case.
    std::vector<std::string> schemes() const;

    /// Null without a URI, for a URI without a scheme or with one that has no backend ("no backend
    /// for the scheme \"usb\""), or when the backend gives none.
    std::shared_ptr<const OrbCSDeviceStatus> deviceStatusWithURI_parameters_error(
        std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
        OrbCSError* error) const override;

  private:
    struct Scheme {
        Backend backend;
        URICheck check;
    };

    std::map<std::string, Scheme, std::less<>> schemes_;
};

}  // namespace TkPPDUpdating
