#include "backends/cups/CUPSScheduler.h"

#include <cups/cups.h>
#include <cups/http.h>
#include <cups/ipp.h>
#include <strings.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <utility>

#include "backends/cups/HTTPTalk.h"
#include "backends/cups/IPPMessage.h"
#include "ppd/FileDescriptor.h"

namespace TkPPDUpdating {

namespace {

/// Connects to the scheduler. The settings that it makes and reads belong to the talking thread.
HTTPOpening schedulerOpening(const std::string& server) {
    return [server](OrbCSError& error) {
        if (!server.empty()) {
            cupsSetServer(server.c_str());
        }
        return openedConnection(cupsServer(), ippPort(), cupsEncryption(), error);
    };
}

/// What libcups last met on this thread.
QueueFailure failureOfLastRequest() {
    const ipp_status_t status = cupsLastError();
    if (status == IPP_STATUS_ERROR_NOT_FOUND) {
        return {&queueSyncCause("no-queue"), "there is no queue of that name"};
    }
    const bool isRefused = status == IPP_STATUS_ERROR_FORBIDDEN ||
                           status == IPP_STATUS_ERROR_NOT_AUTHENTICATED ||
                           status == IPP_STATUS_ERROR_NOT_AUTHORIZED ||
                           status == IPP_STATUS_ERROR_CUPS_AUTHENTICATION_CANCELED;
    const char* text = cupsLastErrorString();
    const std::string answer = text && *text ? text : ippErrorString(status);
    return isRefused ? QueueFailure{&queueSyncCause("scheduler-refuses"),
                                    "the scheduler refuses it: " + answer}
                     : QueueFailure{&queueSyncCause("scheduler-error"),
                                    "the scheduler answers: " + answer};
}

IPPMessage requestForQueue(ipp_op_t operation, const std::string& name) {
    std::array<char, HTTP_MAX_URI> URI{};
    httpAssembleURIf(HTTP_URI_CODING_ALL, URI.data(), static_cast<int>(URI.size()), "ipp", nullptr,
                     "localhost", 0, "/printers/%s", name.c_str());
    IPPMessage request(ippNewRequest(operation));
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, URI.data());
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr,
                 cupsUser());
    return request;
}

void requestAttributes(const IPPMessage& request, std::initializer_list<const char*> names) {
    ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                  static_cast<int>(names.size()), nullptr, names.begin());
}

/// The answer when it is one of success; else null.
IPPMessage answerTo(http_t* connection, IPPMessage request, const char* resource) {
    IPPMessage answer(cupsDoRequest(connection, request.release(), resource));
    const bool isGood = answer && ippGetStatusCode(answer.get()) <= IPP_STATUS_OK_CONFLICTING;
    return isGood ? std::move(answer) : nullptr;
}

int integerOf(ipp_t* answer, const char* name, ipp_tag_t tag) {
    ipp_attribute_t* attribute = ippFindAttribute(answer, name, tag);
    return attribute ? ippGetInteger(attribute, 0) : 0;
}

SchedulerQueue::Kind kindOfQueue(int printerType) {
    const auto bits = static_cast<unsigned>(printerType);
    return bits & static_cast<unsigned>(CUPS_PRINTER_REMOTE)  ? SchedulerQueue::Kind::remote
           : bits & static_cast<unsigned>(CUPS_PRINTER_CLASS) ? SchedulerQueue::Kind::printerClass
                                                              : SchedulerQueue::Kind::own;
}

std::optional<std::vector<std::string>> askForQueueNames(http_t* connection,
                                                         QueueFailure& failure) {
    IPPMessage request(ippNewRequest(IPP_OP_CUPS_GET_PRINTERS));
    requestAttributes(request, {"printer-name", "printer-type"});
    const IPPMessage answer = answerTo(connection, std::move(request), "/");
    if (!answer && cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND) {
        return std::vector<std::string>();  // It has no queues.
    }
    if (!answer) {
        failure = failureOfLastRequest();
        return std::nullopt;
    }
    std::vector<std::string> names;
    std::string name;
    int type = 0;
    const auto endOfQueue = [&] {
        if (!name.empty() && kindOfQueue(type) != SchedulerQueue::Kind::remote) {
            names.push_back(name);
        }
        name.clear();
        type = 0;
    };
    for (ipp_attribute_t* attribute = ippFirstAttribute(answer.get()); attribute;
         attribute = ippNextAttribute(answer.get())) {
        const char* attributeName = ippGetName(attribute);
        if (!attributeName || ippGetGroupTag(attribute) != IPP_TAG_PRINTER) {
            endOfQueue();
        } else if (std::string_view(attributeName) == "printer-name") {
            const char* text = ippGetString(attribute, 0, nullptr);
            name = text ? text : "";
        } else if (std::string_view(attributeName) == "printer-type") {
            type = ippGetInteger(attribute, 0);
        }
    }
    endOfQueue();
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<SchedulerQueue> askForQueue(http_t* connection, const std::string& name,
                                          QueueFailure& failure) {
    IPPMessage request = requestForQueue(IPP_OP_GET_PRINTER_ATTRIBUTES, name);
    requestAttributes(request, {"device-uri", "printer-config-change-time", "printer-type"});
    const IPPMessage answer = answerTo(connection, std::move(request), "/");
    if (!answer) {
        failure = failureOfLastRequest();
        return std::nullopt;
    }
    ipp_attribute_t* device = ippFindAttribute(answer.get(), "device-uri", IPP_TAG_URI);
    const char* deviceURI = device ? ippGetString(device, 0, nullptr) : nullptr;
    return SchedulerQueue{name, kindOfQueue(integerOf(answer.get(), "printer-type", IPP_TAG_ENUM)),
                          deviceURI ? deviceURI : "",
                          integerOf(answer.get(), "printer-config-change-time", IPP_TAG_INTEGER)};
}

/// Connects again where the scheduler, or what stands before it, has said that it closes the
/// connection (RFC 9112, section 9.6). libcups does so itself only for requests that it makes
/// whole.
bool isReadyForAnotherRequest(http_t* connection, QueueFailure& failure) {
    constexpr int kMostMilliseconds = 30000;
    if (strcasecmp(httpGetField(connection, HTTP_FIELD_CONNECTION), "close") != 0) {
        return true;
    }
    httpClearFields(connection);
    const bool isConnected = httpReconnect2(connection, kMostMilliseconds, nullptr) == 0;
    if (!isConnected) {
        failure = {&queueSyncCause("no-scheduler"), "the scheduler closed the connection"};
    }
    return isConnected;
}

QueueFailure failureForHTTPStatus(http_status_t status) {
    if (status == HTTP_STATUS_ERROR) {
        return {&queueSyncCause("no-scheduler"), "the scheduler closed the connection"};
    }
    const bool isRefused = status == HTTP_STATUS_UNAUTHORIZED || status == HTTP_STATUS_FORBIDDEN;
    return {
        isRefused ? &queueSyncCause("scheduler-refuses") : &queueSyncCause("scheduler-error"),
        "the scheduler answers with the HTTP status " + std::to_string(static_cast<int>(status))};
}

SchedulerPPD askForPPD(http_t* connection, const std::string& name, std::size_t mostBytes,
                       QueueFailure& failure) {
    std::array<char, HTTP_MAX_URI> resource{};
    httpAssembleURIf(HTTP_URI_CODING_RESOURCE, resource.data(), static_cast<int>(resource.size()),
                     "http", nullptr, "localhost", 0, "/printers/%s.ppd", name.c_str());
    // The path alone: what follows the host.
    std::string path = resource.data();
    path.erase(0, path.find('/', std::string_view("http://").size()));
    httpClearFields(connection);
    if (httpGet(connection, path.c_str()) != 0) {
        failure = {&queueSyncCause("no-scheduler"), "the request could not be sent"};
        return {};
    }
    const http_status_t status = readHTTPHead(connection);
    if (status == HTTP_STATUS_NOT_FOUND) {
        failure = {&queueSyncCause("no-queue"), "the scheduler has no PPD for it"};
        return {nullptr, true};
    }
    if (status != HTTP_STATUS_OK) {
        failure = failureForHTTPStatus(status);
        return {};
    }
    std::string text;
    OrbCSError cause;
    if (!readHTTPBody(connection, mostBytes, text, cause)) {
        failure = {&queueSyncCause("no-scheduler"), cause.reason};
        return {};
    }
    return {makePPDText(std::move(text)), false};
}

/// The text as a file in memory, which no folder shows and no other program inherits, at its
/// beginning. None when there is no room for it.
FileDescriptor openedText(const std::string& text) {
    FileDescriptor file(::memfd_create("PPD", MFD_CLOEXEC));
    const bool isReady =
        file.isOpen() && writeAll(file.get(), text) && ::lseek(file.get(), 0, SEEK_SET) == 0;
    return isReady ? std::move(file) : FileDescriptor();
}

bool sendPPD(http_t* connection, const std::string& name, const std::string& text,
             QueueFailure& failure) {
    // CUPS-Add-Modify-Printer creates a queue that does not exist.
    if (!askForQueue(connection, name, failure)) {
        return false;
    }
    const FileDescriptor file = openedText(text);
    if (!file.isOpen()) {
        failure = {&queueSyncCause("no-result"), "there is no room for a temporary file"};
        return false;
    }
    IPPMessage request = requestForQueue(IPP_OP_CUPS_ADD_MODIFY_PRINTER, name);
    const IPPMessage answer(
        cupsDoIORequest(connection, request.release(), "/admin/", file.get(), -1));
    if (cupsLastError() > IPP_STATUS_OK_CONFLICTING) {
        failure = failureOfLastRequest();
        return false;
    }
    return true;
}

}  // namespace

CUPSScheduler::CUPSScheduler(std::string server) : CUPSScheduler(std::move(server), Limits()) {}

CUPSScheduler::CUPSScheduler(std::string server, const Limits& limits)
    : server_(std::move(server)), limits_(limits) {}

template <typename Result, typename Talk>
Result CUPSScheduler::ask(QueueFailure& failure, const Talk& talk) const {
    Result result{};
    QueueFailure met;
    OrbCSError error;
    // A talk that ran out of time may have had its answer all the same, but it was not whole.
    const bool isWhole = talkOverHTTP(
        schedulerOpening(server_), limits_.time,
        [&](http_t* connection) { result = talk(connection, met); }, error);
    if (!isWhole) {
        failure = {&queueSyncCause("no-scheduler"),
                   "the scheduler cannot be reached: " + error.reason};
        return Result{};
    }
    failure = met;
    return result;
}

std::string CUPSScheduler::name() const {
    return server_.empty() ? cupsServer() : server_;
}

std::optional<std::vector<std::string>> CUPSScheduler::queueNames(QueueFailure& failure) const {
    return ask<std::optional<std::vector<std::string>>>(failure, askForQueueNames);
}

SchedulerPPD CUPSScheduler::PPDOfQueue(const std::string& name, QueueFailure& failure) const {
    if (!PPDModelCore::couldBeQueueName(name)) {
        failure = {&queueSyncCause("no-queue"), PPDModelCore::kNoQueueName};
        return {};
    }
    return ask<SchedulerPPD>(failure, [&](http_t* connection, QueueFailure& met) {
        return askForPPD(connection, name, limits_.bytes, met);
    });
}

SchedulerQueueAndPPD CUPSScheduler::queueAndPPDWithName(const std::string& name,
                                                        QueueFailure& failure) const {
    if (!PPDModelCore::couldBeQueueName(name)) {
        failure = {&queueSyncCause("no-queue"), PPDModelCore::kNoQueueName};
        return {};
    }
    return ask<SchedulerQueueAndPPD>(failure, [&](http_t* connection, QueueFailure& met) {
        SchedulerQueueAndPPD both{askForQueue(connection, name, met), {}};
        if (both.queue && both.queue->kind == SchedulerQueue::Kind::own &&
            isReadyForAnotherRequest(connection, met)) {
            both.PPD = askForPPD(connection, name, limits_.bytes, met);
        }
        return both;
    });
}

bool CUPSScheduler::installPPD(const std::string& name, const std::string& text,
                               QueueFailure& failure) const {
    if (!PPDModelCore::couldBeQueueName(name)) {
        failure = {&queueSyncCause("no-queue"), PPDModelCore::kNoQueueName};
        return false;
    }
    return ask<bool>(failure, [&](http_t* connection, QueueFailure& met) {
        return sendPPD(connection, name, text, met);
    });
}

PPDModelCore::QueuePPDSource queuePPDSource(std::shared_ptr<const QueueScheduler> scheduler) {
    return [scheduler = std::move(scheduler)](const std::string& queueName,
                                              std::string& reason) -> std::optional<PPDText> {
        QueueFailure failure;
        SchedulerPPD PPD = scheduler->PPDOfQueue(queueName, failure);
        reason = failure.reason;
        return PPD.text || PPD.isRaw ? std::optional(std::move(PPD.text)) : std::nullopt;
    };
}

}  // namespace TkPPDUpdating
