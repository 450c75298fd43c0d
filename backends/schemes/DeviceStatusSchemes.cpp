#include "backends/schemes/DeviceStatusSchemes.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace TkPPDUpdating {

namespace {

/// How much of a URI's scheme a reason shows: enough to recognise it.
constexpr std::size_t kLongestShownScheme = 40;

/// Letters of ASCII, whatever the process's locale says.
char lowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool isLetter(char character) {
    const char lower = lowerCase(character);
    return lower >= 'a' && lower <= 'z';
}

bool canStandInScheme(char character) {
    return isLetter(character) || (character >= '0' && character <= '9') || character == '+' ||
           character == '-' || character == '.';
}

std::string inLowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), lowerCase);
    return lower;
}

/// The scheme of a URI (RFC 3986, section 3.1) in lower case, or nothing.
std::optional<std::string> schemeOf(std::string_view URI) {
    const auto end = std::find_if_not(URI.begin(), URI.end(), canStandInScheme);
    if (end == URI.end() || *end != ':' || end == URI.begin() || !isLetter(URI.front())) {
        return std::nullopt;
    }
    return inLowerCase(URI.substr(0, static_cast<std::size_t>(end - URI.begin())));
}

std::string reasonForNoBackend(std::string_view scheme) {
    std::string reason = "no backend for the scheme \"";
    reason += scheme.substr(0, kLongestShownScheme);
    reason += scheme.size() > kLongestShownScheme ? "...\"" : "\"";
    return reason;
}

}  // namespace

void DeviceStatusSchemes::registerScheme(std::string_view scheme, Backend backend) {
    if (backend) {
        backends_.insert_or_assign(inLowerCase(scheme), std::move(backend));
    } else {
        backends_.erase(inLowerCase(scheme));
    }
}

std::vector<std::string> DeviceStatusSchemes::schemes() const {
    std::vector<std::string> names;
    for (const auto& [scheme, backend] : backends_) {
        names.push_back(scheme);
    }
    return names;
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
    const auto scheme = schemeOf(*deviceURI);
    if (!scheme) {
        cause = {OrbCSError::Cause::malformedURI, "the device URI has no scheme"};
        return nullptr;
    }
    const auto backend = backends_.find(*scheme);
    if (backend == backends_.end()) {
        cause = {OrbCSError::Cause::noBackend, reasonForNoBackend(*scheme)};
        return nullptr;
    }
    return backend->second(std::string(*deviceURI), parameters, cause);
}

}  // namespace TkPPDUpdating
