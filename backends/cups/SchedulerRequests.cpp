#include "backends/cups/SchedulerRequests.h"

#include <cups/cups.h>
#include <cups/http.h>
#include <cups/ipp.h>

#include <string_view>
#include <utility>

#include "text/ASCII.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

QueueFailure noScheduler(std::string reason) {
    return {&queueSyncCause("no-scheduler"), std::move(reason)};
}

constexpr const char* kWhoMay = "; run this as root, or as a member of the group lpadmin";

/// In one language: libcups and the scheduler would tell it in the user's.
QueueFailure failureForHTTPStatus(int status) {
    const std::string number = " (HTTP status " + std::to_string(status) + ")";
    switch (status) {
        case HTTP_STATUS_ERROR:
            return noScheduler("the scheduler closed the connection");
        case HTTP_STATUS_UNAUTHORIZED:
        case HTTP_STATUS_CUPS_AUTHORIZATION_CANCELED:
            return {&queueSyncCause("scheduler-refuses"),
                    std::string("the scheduler refuses it: it wants a password") + kWhoMay};
        case HTTP_STATUS_FORBIDDEN:
            return {&queueSyncCause("scheduler-refuses"),
                    "the scheduler refuses it" + number + kWhoMay};
        default:
            return {&queueSyncCause("scheduler-error"),
                    "the scheduler answers with an error" + number};
    }
}

/// As much of a message as a phrase can hold: up to its first control character or byte that is no
/// UTF-8, and no longer than any message may be.
std::string phraseOfMessage(std::string_view message) {
    constexpr std::size_t kLongestMessage = 255;  // RFC 8011, section 4.1.6.2
    std::size_t length = 0;
    while (length < message.size()) {
        const auto character = UTF8CharacterAtStart(message.substr(length));
        if (!character || isControlCharacter(character->codePoint) ||
            length + character->length > kLongestMessage) {
            break;
        }
        length += character->length;
    }
    return std::string(message.substr(0, length));
}

QueueFailure failureForIPPStatus(ipp_t* answer) {
    const int status = static_cast<int>(ippGetStatusCode(answer));
    ipp_attribute_t* attribute = ippFindAttribute(answer, "status-message", IPP_TAG_TEXT);
    const char* text = attribute ? ippGetString(attribute, 0, nullptr) : nullptr;
    const std::string phrase = phraseOfMessage(text ? text : "");
    const std::string message = phrase.empty() ? "" : ": " + phrase;
    const std::string code = " (" + nameOfIPPStatus(status) + ")";
    switch (status) {
        case IPP_STATUS_ERROR_NOT_FOUND:
            return {&queueSyncCause("no-queue"), "there is no queue of that name"};
        case IPP_STATUS_ERROR_FORBIDDEN:
        case IPP_STATUS_ERROR_NOT_AUTHENTICATED:
        case IPP_STATUS_ERROR_NOT_AUTHORIZED:
            return {&queueSyncCause("scheduler-refuses"),
                    "the scheduler refuses it" + code + message + kWhoMay};
        default:
            return {&queueSyncCause("scheduler-error"),
                    "the scheduler answers with an error" + code + message};
    }
}

/// Sends the request and reads the status and fields of its answer. libcups sees to the
/// credentials that a local scheduler takes from a local user.
int statusOfRequest(http_t* http, ipp_t* request, const std::string& resource,
                    const std::string* file) {
    const std::size_t length = ippLength(request) + (file ? file->size() : 0);
    int status = cupsSendRequest(http, request, resource.c_str(), length);
    if (file && (status == HTTP_STATUS_CONTINUE || status == HTTP_STATUS_OK)) {
        status = cupsWriteRequestData(http, file->data(), file->size());
    }
    return status == HTTP_STATUS_CONTINUE || status == HTTP_STATUS_OK ? readHTTPHead(http) : status;
}

/// Does what the scheduler asks for before it listens; false when it asks for nothing, or that
/// cannot be done. What else the answer says is not waited for: where the connection is broken it
/// may never come, and the next request connects again.
bool complyWith(int status, HTTPConnection& connection, const std::string& resource) {
    http_t* http = connection.http();
    if (status == HTTP_STATUS_UNAUTHORIZED) {
        return cupsDoAuthentication(http, "POST", resource.c_str()) == 0;
    }
    return status == HTTP_STATUS_UPGRADE_REQUIRED && connection.isReadyForRequest() &&
           httpEncryption(http, HTTP_ENCRYPTION_REQUIRED) == 0;
}

}  // namespace

IPPMessage answerOfScheduler(HTTPConnection& connection, const IPPMessage& request,
                             const std::string& resource, const std::string* file,
                             std::size_t mostBytes, QueueFailure& failure) {
    constexpr int kMostTries = 3;
    int status = HTTP_STATUS_ERROR;
    for (int count = 0; count < kMostTries; ++count) {
        if (!connection.isReadyForRequest()) {
            failure = noScheduler("the scheduler closed the connection");
            return nullptr;
        }
        status = statusOfRequest(connection.http(), request.get(), resource, file);
        if (status == HTTP_STATUS_OK || !complyWith(status, connection, resource)) {
            break;
        }
    }
    std::string bytes;
    OrbCSError error;
    if (status != HTTP_STATUS_OK) {
        failure = failureForHTTPStatus(status);
        return nullptr;
    }
    if (!readHTTPBody(connection.http(), mostBytes, bytes, error)) {
        failure = noScheduler(error.reason);
        return nullptr;
    }
    IPPMessage answer = IPPMessageReadFrom(bytes);
    if (!answer) {
        failure = noScheduler("the scheduler's answer is not IPP");
        return nullptr;
    }
    constexpr int kFirstAfterSuccess = 0x0100;  // RFC 8011, appendix B
    if (static_cast<int>(ippGetStatusCode(answer.get())) >= kFirstAfterSuccess) {
        failure = failureForIPPStatus(answer.get());
        return nullptr;
    }
    return answer;
}

bool readFromScheduler(HTTPConnection& connection, const std::string& path, std::size_t mostBytes,
                       std::string& bytes, QueueFailure& failure) {
    http_t* http = connection.http();
    const bool isReady = connection.isReadyForRequest();
    httpClearFields(http);
    if (!isReady || httpGet(http, path.c_str()) != 0) {
        failure = noScheduler("the scheduler closed the connection");
        return false;
    }
    const int status = readHTTPHead(http);
    if (status == HTTP_STATUS_NOT_FOUND) {
        failure = {&queueSyncCause("no-queue"), "the scheduler has no PPD for it"};
        return false;
    }
    OrbCSError error;
    if (status != HTTP_STATUS_OK) {
        failure = failureForHTTPStatus(status);
        return false;
    }
    if (!readHTTPBody(http, mostBytes, bytes, error)) {
        failure = noScheduler(error.reason);
        return false;
    }
    return true;
}

}  // namespace TkPPDUpdating
