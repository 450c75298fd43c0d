#include "backends/ipp/IPPPrinterRequest.h"

#include <cups/cups.h>
#include <cups/http.h>
#include <cups/ipp.h>

#include <strings.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/ipp/IPPAnswerFilter.h"
#include "backends/ipp/IPPStatusMapping.h"
#include "backends/libcups/HTTPTalk.h"
#include "backends/libcups/IPPMessage.h"
#include "backends/schemes/DroppedValues.h"
#include "text/ASCII.h"

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
                   deviceURI.begin(), inASCIILowerCase);
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

constexpr const char* kMediaDatabase = "media-col-database";

/// What a printer is asked.
struct Question {
    int majorVersion = 2;
    int minorVersion = 0;
    /// Whether the media database is asked for, which some printers cannot answer.
    bool withMediaDatabase = true;

    /// Those that a status is made of.
    std::vector<const char*> attributes() const {
        auto names = IPPStatusMapping::requestedAttributes();
        if (!withMediaDatabase) {
            std::erase_if(names, [](std::string_view name) { return name == kMediaDatabase; });
        }
        return names;
    }
};

IPPMessage requestForPrinter(const std::string& URI, const Question& question) {
    IPPMessage request = newIPPRequest(IPP_OP_GET_PRINTER_ATTRIBUTES);
    ippSetVersion(request.get(), question.majorVersion, question.minorVersion);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr,
                 URI.c_str());
    auto names = question.attributes();
    const auto identity = IPPStatusMapping::identityAttributes();
    names.insert(names.end(), identity.begin(), identity.end());
    ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                  static_cast<int>(names.size()), nullptr, names.data());
    return request;
}

OrbCSError errorForHTTPStatus(int status) {
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
            return {Cause::deviceError,
                    "the printer answers with the HTTP status " + std::to_string(status)};
    }
}

/// Why there is no status, and whether the same printer may give one to a smaller question. Who
/// does not let us in, sends us elsewhere or does not speak IPP will not.
struct Failure {
    OrbCSError error;
    bool isWorthAnotherQuestion = false;
};

bool isWorthAnotherQuestion(int status) {
    return status == HTTP_STATUS_ERROR || status == HTTP_STATUS_BAD_REQUEST ||
           status >= HTTP_STATUS_SERVER_ERROR;
}

/// Sends the request and reads the answer's bytes; the reason when there is none.
std::optional<Failure> exchange(http_t* connection, const std::string& resource, ipp_t* request,
                                std::size_t mostBytes, std::string& answer) {
    httpClearFields(connection);
    httpSetField(connection, HTTP_FIELD_CONTENT_TYPE, "application/ipp");
    httpSetLength(connection, ippLength(request));
    ippSetState(request, IPP_STATE_IDLE);
    if (httpPost(connection, resource.c_str()) != 0 ||
        ippWrite(connection, request) != IPP_STATE_DATA) {
        return Failure{{OrbCSError::Cause::brokenAnswer, "the request could not be sent"}, true};
    }
    const int status = readHTTPHead(connection);
    if (status != HTTP_STATUS_OK) {
        return Failure{errorForHTTPStatus(status), isWorthAnotherQuestion(status)};
    }
    const std::string_view type = httpGetField(connection, HTTP_FIELD_CONTENT_TYPE);
    if (!type.empty() && !type.starts_with("application/ipp")) {
        return Failure{{OrbCSError::Cause::notIPP, "the answer is not IPP"}, false};
    }
    OrbCSError error;
    return readHTTPBody(connection, mostBytes, answer, error) ? std::nullopt
                                                              : std::optional(Failure{error, true});
}

/// The status code of an answer (RFC 8010, section 3.1.1); nothing without a whole header.
std::optional<int> statusOfAnswer(std::string_view answer) {
    constexpr std::size_t kHeaderLength = 8;
    if (answer.size() < kHeaderLength) {
        return std::nullopt;
    }
    return static_cast<unsigned char>(answer[2]) << 8U | static_cast<unsigned char>(answer[3]);
}

/// The status that the bytes of an answer mean; null and the cause when they are no usable one.
std::shared_ptr<const ReportedDeviceStatus> statusForBytes(std::string_view answer,
                                                           const Question& question,
                                                           std::size_t mostAttributes,
                                                           DroppedValues dropped,
                                                           OrbCSError& error) {
    const auto names = question.attributes();
    const auto identity = IPPStatusMapping::identityAttributes();
    const IPPAnswerFilter filter({names.begin(), names.end()}, mostAttributes,
                                 {identity.begin(), identity.end()});
    std::string reason;
    IPPFilteredAnswer filtered = filter.filtered(answer, dropped, reason);
    if (filtered.bytes.empty()) {
        error = {OrbCSError::Cause::notIPP, reason};
        return nullptr;
    }
    // RFC 8011, appendix B: every code below is a success, also one that we do not know.
    constexpr int kFirstAfterSuccess = 0x0100;
    const auto code = statusOfAnswer(answer);
    if (code && *code >= kFirstAfterSuccess) {
        error = {OrbCSError::Cause::deviceError, "the printer answers " + nameOfIPPStatus(*code)};
        return nullptr;
    }
    if (!filtered.hasWanted) {
        error = {OrbCSError::Cause::deviceError,
                 "the answer has none of the attributes that it was asked for"};
        return nullptr;
    }
    const IPPMessage message = IPPMessageWithBytes(filtered.bytes);
    if (!message) {
        error = {OrbCSError::Cause::notIPP,
                 "the answer cannot be read as IPP, or there is not enough memory for it"};
        return nullptr;
    }
    return IPPStatusMapping::statusForAnswer(
        IPPAnswer(message.get(), std::move(dropped), std::move(filtered.syntaxes)));
}

constexpr std::string_view kDNSSD = "dnssd://";

bool isDNSSD(const std::string& deviceURI) {
    return strncasecmp(deviceURI.c_str(), kDNSSD.data(), kDNSSD.size()) == 0;
}

/// Whether the name is one of a service that speaks IPP (RFC 6763, section 7). What is sent to
/// another one, as that of a raw port, might be printed.
bool isOfIPPService(const std::string& deviceURI) {
    const std::string name = deviceURI.substr(0, deviceURI.find_first_of("/?", kDNSSD.size()));
    return strcasestr(name.c_str(), "._ipp._tcp") || strcasestr(name.c_str(), "._ipps._tcp");
}

/// Resolves a name of DNS-SD and connects to the printer; fills in where that is.
http_t* resolvedConnection(const std::string& deviceURI, std::chrono::milliseconds limit,
                           const HTTPOpeningTime& time, Printer& printer, OrbCSError& error) {
    std::array<char, HTTP_MAX_URI> resource{};
    // libcups makes a destination of "ipp" only, whatever the service is.
    const std::string name = "ipp://" + deviceURI.substr(kDNSSD.size());
    cups_dest_t* destination = cupsGetDestWithURI("printer", name.c_str());
    http_t* connection =
        destination
            ? cupsConnectDest(destination, CUPS_DEST_FLAGS_DEVICE, static_cast<int>(limit.count()),
                              &time.cancel, resource.data(), resource.size(), nullptr, nullptr)
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

OrbCSError errorOfOtherService() {
    return {OrbCSError::Cause::noBackend,
            "its DNS-SD name is none of an IPP service (_ipp._tcp or _ipps._tcp)"};
}

/// Asks one printer, as often as need be, within one limit of time.
class Asking {
  public:
    Asking(const IPPDeviceStatusLimits& limits, std::chrono::milliseconds time,
           std::shared_ptr<Printer> printer, HTTPOpening opening)
        : limits_(limits),
          deadline_(std::chrono::steady_clock::now() + time),
          remaining_(time),
          printer_(std::move(printer)),
          opening_(std::move(opening)) {}

    std::shared_ptr<const ReportedDeviceStatus> status(OrbCSError& error) {
        auto status = statusForQuestion({});
        if (status || !failure_.isWorthAnotherQuestion) {
            error = failure_.error;
            return status;
        }
        // What the first question met is the reason to tell, whatever the second one meets.
        error = failure_.error;
        // A printer that says that it does not know the version has said nothing of the database.
        const bool isVersionRefused =
            statusOfAnswer(answer_) == IPP_STATUS_ERROR_VERSION_NOT_SUPPORTED;
        remaining_ = std::chrono::ceil<std::chrono::milliseconds>(deadline_ -
                                                                  std::chrono::steady_clock::now());
        return remaining_.count() > 0 ? statusForQuestion({1, 1, isVersionRefused}) : nullptr;
    }

  private:
    std::shared_ptr<const ReportedDeviceStatus> statusForQuestion(const Question& question) {
        DroppedValues dropped(IPPStatusMapping::meaningOfDrop);
        if (!question.withMediaDatabase) {
            dropped.add(kMediaDatabase, failure_.error.reason +
                                            ", so it was asked again without: media types "
                                            "that are in it alone are left out");
        }
        failure_ = {};
        answer_.clear();
        std::optional<Failure> failure;
        const bool isWhole = talkOverHTTP(
            opening_, {remaining_, limits_.isCancelled},
            [&](HTTPConnection& connection) {
                const IPPMessage request = requestForPrinter(printer_->URI, question);
                failure = exchange(connection.http(), printer_->resource, request.get(),
                                   limits_.bytes, answer_);
            },
            failure_.error);
        if (!isWhole) {
            return nullptr;
        }
        if (failure) {
            failure_ = std::move(*failure);
            return nullptr;
        }
        failure_.isWorthAnotherQuestion = true;
        return statusForBytes(answer_, question, limits_.attributes, std::move(dropped),
                              failure_.error);
    }

    const IPPDeviceStatusLimits& limits_;
    std::chrono::steady_clock::time_point deadline_;
    std::chrono::milliseconds remaining_;
    std::shared_ptr<Printer> printer_;
    HTTPOpening opening_;
    std::string answer_;
    Failure failure_;
};

}  // namespace

std::optional<OrbCSError> errorInURIOfIPPPrinter(const std::string& deviceURI) {
    if (isDNSSD(deviceURI)) {
        return isOfIPPService(deviceURI) ? std::nullopt : std::optional(errorOfOtherService());
    }
    if (printerWithURI(deviceURI)) {
        return std::nullopt;
    }
    return OrbCSError{OrbCSError::Cause::malformedURI, kNoPrinter};
}

std::shared_ptr<const ReportedDeviceStatus> statusOfIPPPrinter(const std::string& deviceURI,
                                                               const IPPDeviceStatusLimits& limits,
                                                               std::chrono::milliseconds time,
                                                               OrbCSError& error) {
    // Shared with the thread, which may outlive this call while it resolves a name.
    const auto printer = std::make_shared<Printer>();
    if (isDNSSD(deviceURI)) {
        if (!isOfIPPService(deviceURI)) {
            error = errorOfOtherService();
            return nullptr;
        }
    } else {
        auto separated = printerWithURI(deviceURI);
        if (!separated) {
            error = {OrbCSError::Cause::malformedURI, kNoPrinter};
            return nullptr;
        }
        *printer = std::move(*separated);
    }
    const HTTPOpening opening = [printer, deviceURI, limit = time](const HTTPOpeningTime& until,
                                                                   OrbCSError& cause) {
        return isDNSSD(deviceURI)
                   ? resolvedConnection(deviceURI, limit, until, *printer, cause)
                   : openedConnection(printer->host, printer->port,
                                      printer->isEncrypted ? HTTP_ENCRYPTION_ALWAYS
                                                           : HTTP_ENCRYPTION_IF_REQUESTED,
                                      until, cause);
    };
    return Asking(limits, time, printer, opening).status(error);
}

}  // namespace TkPPDUpdating
