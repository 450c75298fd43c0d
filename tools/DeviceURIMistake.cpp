#include "tools/DeviceURIMistake.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "text/FileURL.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

namespace {

constexpr const char* kAnyPrinter = "ipp://HOST/ipp/print";
constexpr const char* kAnyDevice = "ipp://HOST/ipp/print, or file:PATH for a recorded status";

bool isFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

/// The file URL of a path, which stays relative when it is.
std::string fileURL(const std::string& path) {
    constexpr std::string_view kScheme = "file:";
    constexpr std::string_view kRoot = "file:///";
    return path.starts_with('/')
               ? fileURLFromPath(path)
               : std::string(kScheme) + fileURLFromPath("/" + path).substr(kRoot.size());
}

bool canBeHost(std::string_view text) {
    return !text.empty() && text.find_first_not_of(
                                "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                ".-_[]") == std::string_view::npos;
}

/// What was meant by a text without a scheme.
std::string insteadOfNoScheme(const std::string& text) {
    if (isFile(text) || text.ends_with(".json")) {
        return fileURL(text);
    }
    return canBeHost(text) ? "ipp://" + text + "/ipp/print" : kAnyDevice;
}

/// What was meant by a URI of a scheme without a backend: a network printer that speaks another
/// protocol as a rule speaks IPP as well.
std::string insteadOfScheme(const std::string& URI) {
    for (const std::string_view scheme : {"http://", "https://", "socket://", "lpd://"}) {
        if (!URI.starts_with(scheme)) {
            continue;
        }
        const std::string rest = URI.substr(scheme.size());
        const std::string host = rest.substr(0, rest.find_first_of(":/?#"));
        if (canBeHost(host)) {
            return scheme == "http://"    ? "ipp://" + rest
                   : scheme == "https://" ? "ipps://" + rest
                                          : "ipp://" + host + "/ipp/print";
        }
    }
    return kAnyDevice;
}

std::string instead(const std::string& URI, const OrbCSError& error) {
    using Cause = OrbCSError::Cause;
    const auto scheme = DeviceStatusSchemes::schemeOfURI(URI);
    if (error.cause == Cause::unreadableRecording) {
        return "file: and the path of a recording, such as \"tkppdupdate status\" writes";
    }
    if (!scheme) {
        return insteadOfNoScheme(URI);
    }
    if (error.cause == Cause::noBackend) {
        return insteadOfScheme(URI);
    }
    return scheme == "file" ? "file:PATH or file:///PATH" : kAnyPrinter;
}

}  // namespace

std::optional<std::string> phraseForMistakenDeviceURI(const Backends& backends,
                                                      const std::string& deviceURI) {
    const auto error = backends.mistakeInDeviceURI(deviceURI);
    return error ? std::optional(error->reason + "; write " +
                                 instead(Diagnostics::withoutUserInfo(deviceURI), *error))
                 : std::nullopt;
}

void refuseMistakenDeviceURI(const Backends& backends, const std::string& deviceURI) {
    if (const auto phrase = phraseForMistakenDeviceURI(backends, deviceURI)) {
        throw Failure(ExitStatus::noResult, Diagnostics::nameOfDevice(deviceURI), *phrase);
    }
}

}  // namespace TkPPDUpdating
