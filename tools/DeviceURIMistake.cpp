#include "tools/DeviceURIMistake.h"

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/NetworkPlace.h"
#include "text/ASCII.h"
#include "text/FileURL.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/SimilarWord.h"

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

/// The ends of a name that is made of words, from each of its words but the first: short ones,
/// which other names may end with as well, left out.
std::vector<std::string> endsOfName(std::string_view name) {
    constexpr std::size_t kShortestEnd = 8;
    std::vector<std::string> ends;
    for (std::size_t at = 1; at + kShortestEnd <= name.size(); ++at) {
        if (!isASCIILowerCaseLetter(name[at]) && isASCIILowerCaseLetter(name[at - 1])) {
            ends.emplace_back(name.substr(at));
        }
    }
    return ends;
}

/// The member that was probably meant by one that a recording may not have; empty when it resembles
/// none. "Acessories" is meant to be "DeviceAccessories".
std::string memberMeantBy(const RecordedIgnoredMember& ignored) {
    std::string meant = similarWord(ignored.name, ignored.known);
    for (auto known = ignored.known.begin(); meant.empty() && known != ignored.known.end();
         ++known) {
        if (!similarWord(ignored.name, endsOfName(*known)).empty()) {
            meant = *known;
        }
    }
    return meant;
}

/// What is wrong with a recording that was read: a member that is probably misspelt.
std::optional<std::string> phraseForMisspeltMember(const Backends& backends,
                                                   const std::string& deviceURI) {
    if (DeviceStatusSchemes::schemeOfURI(deviceURI) != "file") {
        return std::nullopt;
    }
    const auto status =
        backends.devices().deviceStatusWithURI_parameters_error(deviceURI, nullptr, nullptr);
    const auto* recorded = dynamic_cast<const RecordedDeviceStatus*>(status.get());
    if (!recorded) {
        return std::nullopt;
    }
    for (const auto& ignored : recorded->ignoredMembers()) {
        const std::string meant = memberMeantBy(ignored);
        if (!meant.empty()) {
            return pathFromFileURL(deviceURI).value_or(deviceURI) + ": " + ignored.place +
                   ": is no member of a recording; did you mean \"" + meant + "\"?";
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> phraseForMistakenDeviceURI(const Backends& backends,
                                                      const std::string& deviceURI) {
    const auto error = backends.mistakeInDeviceURI(deviceURI);
    return error ? std::optional(error->reason + "; write " +
                                 instead(Diagnostics::withoutUserInfo(deviceURI), *error))
                 : phraseForMisspeltMember(backends, deviceURI);
}

std::optional<std::string> phraseForMistakenSocketURI(const std::string& deviceURI) {
    const auto place = NetworkPlace::placeOfURI(deviceURI);
    return place && place->scheme == "socket" && !place->hasUserInfo
               ? std::nullopt
               : std::optional<std::string>(
                     "--ask-postscript asks a PostScript printer; write socket://HOST");
}

void refuseMistakenDeviceURI(const Backends& backends, const std::string& deviceURI) {
    if (const auto phrase = phraseForMistakenDeviceURI(backends, deviceURI)) {
        throw Failure(ExitStatus::noResult, Diagnostics::nameOfDevice(deviceURI), *phrase);
    }
}

}  // namespace TkPPDUpdating
