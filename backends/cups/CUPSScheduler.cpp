#include "backends/cups/CUPSScheduler.h"

#include <cups/cups.h>
#include <cups/http.h>
#include <cups/ipp.h>

#include <array>
#include <string_view>
#include <utility>

#include "backends/cups/SchedulerAnswers.h"
#include "backends/cups/SchedulerRequests.h"
#include "backends/libcups/HTTPTalk.h"
#include "backends/libcups/IPPMessage.h"
#include "backends/schemes/QueueName.h"

namespace TkPPDUpdating {

namespace {

/// Connects to the scheduler. The settings that it makes and reads belong to the talking thread.
HTTPOpening schedulerOpening(const std::string& server) {
    return [server](const HTTPOpeningTime& time, OrbCSError& error) {
        if (!server.empty()) {
            cupsSetServer(server.c_str());
        }
        return openedConnection(cupsServer(), ippPort(), cupsEncryption(), time, error);
    };
}

QueueFailure failureOfTalk(const OrbCSError& error) {
    return error.cause == OrbCSError::Cause::cancelled
               ? QueueFailure{&queueSyncCause("interrupted"), "interrupted"}
               : QueueFailure{&queueSyncCause("no-scheduler"),
                              "the scheduler cannot be reached: " + error.reason};
}

void requestAttributes(const IPPMessage& request, std::vector<const char*> names) {
    ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                  static_cast<int>(names.size()), nullptr, names.data());
}

std::optional<std::vector<std::string>> askForQueueNames(HTTPConnection& connection,
                                                         std::size_t mostBytes,
                                                         QueueFailure& failure) {
    IPPMessage request = newIPPRequest(IPP_OP_CUPS_GET_PRINTERS);
    requestAttributes(request, {"printer-name", "printer-type"});
    const IPPMessage answer =
        answerOfScheduler(connection, request, "/", nullptr, mostBytes, failure);
    if (!answer && failure.isOf(queueSyncCause("no-queue"))) {
        return std::vector<std::string>();  // It has no queues.
    }
    return answer ? std::optional(queueNamesInAnswer(answer.get())) : std::nullopt;
}

class SchedulerTalk : public QueueTalk {
  public:
    SchedulerTalk(HTTPConnection& connection, const std::string& name,
                  const CUPSScheduler::Limits& limits, std::atomic<bool>& mustFinish)
        : connection_(connection), name_(name), limits_(limits), mustFinish_(mustFinish) {}

    std::optional<SchedulerQueue> queue(QueueFailure& failure) override {
        IPPMessage request = requestForQueue(IPP_OP_GET_PRINTER_ATTRIBUTES);
        const auto settings = schedulerSettings();
        std::vector<const char*> names(settings.begin(), settings.end());
        names.insert(names.end(), {"device-uri", "printer-config-change-time", "printer-state",
                                   "printer-state-reasons", "printer-type"});
        requestAttributes(request, std::move(names));
        const IPPMessage answer = answerTo(request, "/", nullptr, failure);
        return answer ? std::optional(queueInAnswer(answer.get(), name_)) : std::nullopt;
    }

    SchedulerPPD PPD(QueueFailure& failure) override {
        std::array<char, HTTP_MAX_URI> resource{};
        httpAssembleURIf(HTTP_URI_CODING_RESOURCE, resource.data(),
                         static_cast<int>(resource.size()), "http", nullptr, "localhost", 0,
                         "/printers/%s.ppd", name_.c_str());
        // The path alone: what follows the host.
        std::string path = resource.data();
        path.erase(0, path.find('/', std::string_view("http://").size()));
        std::string text;
        if (readFromScheduler(connection_, path, limits_.bytes, text, failure)) {
            return {makePPDText(std::move(text)), false};
        }
        return {nullptr, failure.isOf(queueSyncCause("no-queue"))};
    }

    Delivery install(const std::string& text, QueueFailure& failure) override {
        mustFinish_ = true;
        if (limits_.isCancelled && *limits_.isCancelled) {
            failure = {&queueSyncCause("interrupted"), "interrupted"};
            return Delivery::notTaken;
        }
        const IPPMessage request = requestForQueue(IPP_OP_CUPS_ADD_MODIFY_PRINTER);
        if (answerTo(request, "/admin/", &text, failure)) {
            return Delivery::taken;
        }
        return failure.isOf(queueSyncCause("no-scheduler")) ? Delivery::unknown
                                                            : Delivery::notTaken;
    }

    bool setStateReasons(const std::vector<std::string>& reasons, QueueFailure& failure) override {
        const IPPMessage request = requestForQueue(IPP_OP_CUPS_ADD_MODIFY_PRINTER);
        std::vector<const char*> words;
        words.reserve(reasons.size());
        for (const std::string& reason : reasons) {
            words.push_back(reason.c_str());
        }
        ippAddStrings(request.get(), IPP_TAG_PRINTER, IPP_TAG_KEYWORD, "printer-state-reasons",
                      static_cast<int>(words.size()), nullptr, words.data());
        return answerTo(request, "/admin/", nullptr, failure) != nullptr;
    }

  private:
    IPPMessage requestForQueue(ipp_op_t operation) const {
        std::array<char, HTTP_MAX_URI> URI{};
        httpAssembleURIf(HTTP_URI_CODING_ALL, URI.data(), static_cast<int>(URI.size()), "ipp",
                         nullptr, "localhost", 0, "/printers/%s", name_.c_str());
        IPPMessage request = newIPPRequest(operation);
        ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr,
                     URI.data());
        ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name",
                     nullptr, cupsUser());
        return request;
    }

    IPPMessage answerTo(const IPPMessage& request, const std::string& resource,
                        const std::string* file, QueueFailure& failure) {
        return answerOfScheduler(connection_, request, resource, file, limits_.bytes, failure);
    }

    HTTPConnection& connection_;
    const std::string& name_;
    const CUPSScheduler::Limits& limits_;
    std::atomic<bool>& mustFinish_;
};

}  // namespace

CUPSScheduler::CUPSScheduler(std::string server) : CUPSScheduler(std::move(server), Limits()) {}

CUPSScheduler::CUPSScheduler(std::string server, const Limits& limits)
    : server_(std::move(server)), limits_(limits) {}

std::string CUPSScheduler::name() const {
    return server_.empty() ? cupsServer() : server_;
}

std::optional<std::vector<std::string>> CUPSScheduler::queueNames(QueueFailure& failure) const {
    std::optional<std::vector<std::string>> names;
    OrbCSError error;
    const bool isWhole = talkOverHTTP(
        schedulerOpening(server_), {limits_.time, limits_.isCancelled},
        [&](HTTPConnection& connection) {
            names = askForQueueNames(connection, limits_.bytes, failure);
        },
        error);
    if (isWhole) {
        return names;
    }
    failure = failureOfTalk(error);
    return std::nullopt;
}

bool CUPSScheduler::talkAbout(const std::string& queueName,
                              const std::function<void(QueueTalk& queue)>& talk, Patience patience,
                              QueueFailure& failure) const {
    if (!couldBeQueueName(queueName)) {
        failure = {&queueSyncCause("no-queue"), kNoQueueName};
        return false;
    }
    std::atomic<bool> mustFinish{patience == Patience::finishing};
    OrbCSError error;
    const bool isWhole = talkOverHTTP(
        schedulerOpening(server_), {limits_.time, limits_.isCancelled, &mustFinish},
        [&](HTTPConnection& connection) {
            SchedulerTalk queue(connection, queueName, limits_, mustFinish);
            talk(queue);
        },
        error);
    if (!isWhole) {
        failure = failureOfTalk(error);
    }
    return isWhole;
}

}  // namespace TkPPDUpdating
