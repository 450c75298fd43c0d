#include "backends/schemes/DeviceStatusSchemes.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

/// How much of a URI's scheme a reason shows: enough to recognise it.
constexpr std::size_t kLongestShownScheme = 40;

bool canStandInScheme(char character) {
    return isASCIILetterOrDigit(character) || character == '+' || character == '-' ||
           character == '.';
}

std::string reasonForNoBackend(std::string_view scheme) {
    std::string reason = "no backend for the scheme \"";
    reason += scheme.substr(0, kLongestShownScheme);
    reason += scheme.size() > kLongestShownScheme ? "...\"" : "\"";
    return reason;
}

}  // namespace

std::optional<std::string> DeviceStatusSchemes::schemeOfURI(std::string_view URI) {
    const auto end = std::find_if_not(URI.begin(), URI.end(), canStandInScheme);
    if (end == URI.end() || *end != ':' || end == URI.begin() || !isASCIILetter(URI.front())) {
        return std::nullopt;
    }
    return textInASCIILowerCase(URI.substr(0, static_cast<std::size_t>(end - URI.begin())));
}

void DeviceStatusSchemes::registerScheme(std::string_view scheme, Backend backend, URICheck check) {
    if (backend) {
        schemes_.insert_or_assign(textInASCIILowerCase(scheme),
                                  Scheme{std::move(backend), std::move(check)});
    } else {
        schemes_.erase(textInASCIILowerCase(scheme));
    }
}

std::vector<std::string> DeviceStatusSchemes::schemes() const {
    std::vector<std::string> names;
    for (const auto& [name, scheme] : schemes_) {
        names.push_back(name);
    }
    return names;
}

std::optional<OrbCSError> DeviceStatusSchemes::errorInURI(std::string_view deviceURI) const {
    const auto name = schemeOfURI(deviceURI);
    if (!name) {
        return OrbCSError{OrbCSError::Cause::malformedURI, "the device URI has no scheme"};
    }
    const auto scheme = schemes_.find(*name);
    if (scheme == schemes_.end()) {
        return OrbCSError{OrbCSError::Cause::noBackend, reasonForNoBackend(*name)};
    }
    return scheme->second.check ? scheme->second.check(std::string(deviceURI)) : std::nullopt;
}

std::shared_ptr<const OrbCSDeviceStatus> DeviceStatusSchemes::deviceStatusWithURI_parameters_error(
    std::optional<std::string_view> deviceURI, const OrbDictionary* parameters,
    OrbCSError* error) const {
    OrbCSError ignored;
    OrbCSError& cause = error ? *error : ignored;
    if (!deviceURI) {
        cause = {OrbCSError::Cause::malformedURI, "no device URI is given"};
        return nullptr;
    }
    if (auto wrong = errorInURI(*deviceURI)) {
        cause = *std::move(wrong);
        return nullptr;
    }
    return schemes_.find(*schemeOfURI(*deviceURI))
        ->second.backend(std::string(*deviceURI), parameters, cause);
}

}  // namespace TkPPDUpdating
