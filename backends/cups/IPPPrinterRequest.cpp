#include "backends/cups/IPPPrinterRequest.h"

#include <cups/cups.h>
#include <cups/http.h>
#include <cups/ipp.h>

#include <strings.h>

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "backends/cups/DroppedValues.h"
#include "backends/cups/HTTPTalk.h"
#include "backends/cups/IPPAnswerFilter.h"
#include "backends/cups/IPPMessage.h"
#include "backends/cups/IPPStatusMapping.h"

namespace TkPPDUpdating {

namespace {

constexpr const char* kNoPrinter = "the URI names no IPP printer";

/// Where a printer listens.
struct Printer {
    std::string URI;
    std::string host;
    int port = 0;
    std::string resource;
    bool isEncrypted = false;
};

/// The URI of the printer itself, without user name and password, which are nobody's business here,
/// and without the options of the CUPS backend behind "?". Nothing when it is no IPP URI.
std::optional<Printer> printerWithURI(std::string deviceURI) {
    // RFC 3986, section 3.1: the case of a scheme says nothing, but libcups knows "ipps" only.
    std::transform(deviceURI.begin(), std::find(deviceURI.begin(), deviceURI.end(), ':'),
                   deviceURI.begin(), [](char character) {
                       return character >= 'A' && character <= 'Z'
                                  ? static_cast<char>(character - 'A' + 'a')
                                  : character;
                   });
    std::array<char, HTTP_MAX_URI> scheme{};
    std::array<char, HTTP_MAX_URI> userInfo{};
    std::array<char, HTTP_MAX_URI> host{};
    std::array<char, HTTP_MAX_URI> resource{};
    Printer printer;
    const auto status = httpSeparateURI(HTTP_URI_CODING_ALL, deviceURI.c_str(), scheme.data(),
                                        static_cast<int>(scheme.size()), userInfo.data(),
                                        static_cast<int>(userInfo.size()), host.data(),
                                        static_cast<int>(host.size()), &printer.port,
                                        resource.data(), static_cast<int>(resource.size()));
    if (status < HTTP_URI_STATUS_OK || host[0] == '\0' || host[0] == '/') {
        return std::nullopt;
    }
    constexpr int kHTTPSPort = 443;
    printer.host = host.data();
    printer.isEncrypted = std::string_view(scheme.data()) == "ipps" || printer.port == kHTTPSPort;
    printer.resource =
        std::string(resource.data()).substr(0, std::string(resource.data()).find('?'));
    std::array<char, HTTP_MAX_URI> URI{};
    if (httpAssembleURI(HTTP_URI_CODING_ALL, URI.data(), static_cast<int>(URI.size()),
                        scheme.data(), nullptr, host.data(), printer.port,
                        printer.resource.c_str()) < HTTP_URI_STATUS_OK) {
        return std::nullopt;
    }
    printer.URI = URI.data();
    return printer;
}

IPPMessage requestForPrinter(const std::string& URI, int majorVersion, int minorVersion) {
    IPPMessage request = newIPPRequest(IPP_OP_GET_PRINTER_ATTRIBUTES);
    ippSetVersion(request.get(), majorVersion, minorVersion);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr,
                 URI.c_str());
    const auto names = IPPStatusMapping::requestedAttributes();
    ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                  static_cast<int>(names.size()), nullptr, names.data());
    return request;
}

OrbCSError errorForHTTPStatus(http_status_t status) {
    using Cause = OrbCSError::Cause;
    switch (status) {
        case HTTP_STATUS_ERROR:
            return {Cause::brokenAnswer, "the connection was closed before an answer"};
        case HTTP_STATUS_UNAUTHORIZED:
            return {Cause::accessDenied, "the printer asks for a password"};
        case HTTP_STATUS_UPGRADE_REQUIRED:
            return {Cause::accessDenied, "the printer wants an encrypted connection (ipps:)"};
        case HTTP_STATUS_MULTIPLE_CHOICES:
        case HTTP_STATUS_MOVED_PERMANENTLY:
        case HTTP_STATUS_FOUND:
        case HTTP_STATUS_SEE_OTHER:
        case HTTP_STATUS_TEMPORARY_REDIRECT:
            return {Cause::notIPP, "the printer sends us elsewhere, which is not followed"};
        default:
            return {Cause::deviceError, "the printer answers with the HTTP status " +
                                            std::to_string(static_cast<int>(status))};
    }
}

/// Sends the request and reads the answer's bytes; false and the cause when there is none.
bool exchange(http_t* connection, const std::string& resource, ipp_t* request,
              std::size_t mostBytes, std::string& answer, OrbCSError& error) {
    httpClearFields(connection);
    httpSetField(connection, HTTP_FIELD_CONTENT_TYPE, "application/ipp");
    httpSetLength(connection, ippLength(request));
    ippSetState(request, IPP_STATE_IDLE);
    if (httpPost(connection, resource.c_str()) != 0 ||
        ippWrite(connection, request) != IPP_STATE_DATA) {
        error = {OrbCSError::Cause::brokenAnswer, "the request could not be sent"};
        return false;
    }
    const http_status_t status = readHTTPHead(connection);
    if (status != HTTP_STATUS_OK) {
        error = errorForHTTPStatus(status);
        return false;
    }
    const std::string_view type = httpGetField(connection, HTTP_FIELD_CONTENT_TYPE);
    if (!type.empty() && !type.starts_with("application/ipp")) {
        error = {OrbCSError::Cause::notIPP, "the answer is not IPP"};
        return false;
    }
    return readHTTPBody(connection, mostBytes, answer, error);
}

/// The status code of an answer (RFC 8010, section 3.1.1), which has a whole header.
ipp_status_t statusOfAnswer(std::string_view answer) {
    return static_cast<ipp_status_t>(static_cast<unsigned char>(answer[2]) << 8U |
                                     static_cast<unsigned char>(answer[3]));
}

std::shared_ptr<const IPPDeviceStatus> statusForBytes(std::string_view answer,
                                                      std::size_t mostAttributes,
                                                      OrbCSError& error) {
    std::set<std::string, std::less<>> wanted;
    for (const char* name : IPPStatusMapping::requestedAttributes()) {
        wanted.emplace(name);
    }
    DroppedValues dropped;
    std::string reason;
    const std::string bytes =
        IPPAnswerFilter(std::move(wanted), mostAttributes).filtered(answer, dropped, reason);
    if (bytes.empty()) {
        error = {OrbCSError::Cause::notIPP, reason};
        return nullptr;
    }
    // RFC 8011, appendix B: every code below is a success, also one that we do not know.
    constexpr int kFirstAfterSuccess = 0x0100;
    if (static_cast<int>(statusOfAnswer(answer)) >= kFirstAfterSuccess) {
        error = {OrbCSError::Cause::deviceError,
                 "the printer answers " + std::string(ippErrorString(statusOfAnswer(answer)))};
        return nullptr;
    }
    const IPPMessage message = IPPMessageWithBytes(bytes);
    if (!message) {
        error = {OrbCSError::Cause::notIPP,
                 "the answer cannot be read as IPP, or there is not enough memory for it"};
        return nullptr;
    }
    return IPPStatusMapping::statusForAnswer(message.get(), std::move(dropped));
}

/// Whether the printer may know no IPP of the version that it was asked in: some old ones call the
/// request a bad one and not its version.
bool isVersionRefused(std::string_view answer) {
    constexpr std::size_t kHeaderLength = 8;
    return answer.size() >= kHeaderLength &&
           (statusOfAnswer(answer) == IPP_STATUS_ERROR_VERSION_NOT_SUPPORTED ||
            statusOfAnswer(answer) == IPP_STATUS_ERROR_BAD_REQUEST);
}

bool isDNSSD(const std::string& deviceURI) {
    return strncasecmp(deviceURI.c_str(), "dnssd:", 6) == 0;
}

/// Resolves a name of DNS-SD and connects to the printer; fills in where that is.
http_t* resolvedConnection(const std::string& deviceURI, std::chrono::milliseconds time,
                           Printer& printer, OrbCSError& error) {
    std::array<char, HTTP_MAX_URI> resource{};
    cups_dest_t* destination = cupsGetDestWithURI("printer", deviceURI.c_str());
    http_t* connection =
        destination
            ? cupsConnectDest(destination, CUPS_DEST_FLAGS_DEVICE, static_cast<int>(time.count()),
                              nullptr, resource.data(), resource.size(), nullptr, nullptr)
            : nullptr;
    cupsFreeDests(destination ? 1 : 0, destination);
    if (!connection) {
        error = {OrbCSError::Cause::noConnection,
                 "its DNS-SD name could not be resolved and connected"};
        return nullptr;
    }
    std::array<char, HTTP_MAX_HOST> host{};
    httpGetHostname(connection, host.data(), static_cast<int>(host.size()));
    std::array<char, HTTP_MAX_URI> URI{};
    httpAssembleURI(HTTP_URI_CODING_ALL, URI.data(), static_cast<int>(URI.size()),
                    httpIsEncrypted(connection) ? "ipps" : "ipp", nullptr, host.data(),
                    httpAddrPort(httpGetAddress(connection)), resource.data());
    printer.resource = resource.data();
    printer.URI = URI.data();
    return connection;
}

}  // namespace

std::optional<OrbCSError> IPPPrinterRequest::errorInURI(const std::string& deviceURI) {
    if (isDNSSD(deviceURI) || printerWithURI(deviceURI)) {
        return std::nullopt;
    }
    return OrbCSError{OrbCSError::Cause::malformedURI, kNoPrinter};
}

std::shared_ptr<const IPPDeviceStatus> IPPPrinterRequest::statusOfPrinter(
    const std::string& deviceURI, OrbCSError& error) const {
    // Shared with the thread, which may outlive this call while it resolves a name.
    const auto printer = std::make_shared<Printer>();
    if (!isDNSSD(deviceURI)) {
        auto separated = printerWithURI(deviceURI);
        if (!separated) {
            error = {OrbCSError::Cause::malformedURI, kNoPrinter};
            return nullptr;
        }
        *printer = std::move(*separated);
    }
    const HTTPOpening opening = [printer, deviceURI, time = time_](OrbCSError& cause) {
        return isDNSSD(deviceURI)
                   ? resolvedConnection(deviceURI, time, *printer, cause)
                   : openedConnection(printer->host, printer->port,
                                      printer->isEncrypted ? HTTP_ENCRYPTION_ALWAYS
                                                           : HTTP_ENCRYPTION_IF_REQUESTED,
                                      cause);
    };
    const auto deadline = std::chrono::steady_clock::now() + time_;
    std::string answer;
    const auto ask = [&](int majorVersion, int minorVersion, std::chrono::milliseconds time) {
        answer.clear();
        OrbCSError cause;
        bool isAnswered = false;
        const bool isWhole = talkOverHTTP(
            opening, {time, limits_.isCancelled},
            [&](HTTPConnection& connection) {
                const IPPMessage request =
                    requestForPrinter(printer->URI, majorVersion, minorVersion);
                isAnswered = exchange(connection.http(), printer->resource, request.get(),
                                      limits_.bytes, answer, cause);
            },
            error);
        if (isWhole && !isAnswered) {
            error = cause;
        }
        return isWhole && isAnswered;
    };
    // A printer of IPP 1.1 may also be one that closes the connection after each answer.
    const bool isRefused =
        !ask(2, 0, time_) ||
        (isVersionRefused(answer) && !ask(1, 1,
                                          std::chrono::duration_cast<std::chrono::milliseconds>(
                                              deadline - std::chrono::steady_clock::now())));
    if (isRefused) {
        return nullptr;
    }
    return statusForBytes(answer, limits_.attributes, error);
}

}  // namespace TkPPDUpdating
