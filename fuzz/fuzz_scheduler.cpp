// Talks with a scheduler: the input is where it is and how it is asked, what is asked of which
// queue, and what the scheduler says to each request, any bytes. What holds is what
// sync/QueueScheduler.h says.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/cups/CUPSQueues.h"
#include "backends/cups/CUPSScheduler.h"
#include "backends/schemes/QueueName.h"
#include "fuzz/AnswerServer.h"
#include "fuzz/TalkInput.h"
#include "tests/support/TemporaryDirectory.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;
using std::chrono::milliseconds;

namespace {

std::atomic<bool> isCancelled{false};

/// No settings of this machine or user; the scheduler that is not named is the one of the domain
/// socket.
struct Outside {
    Testing::TemporaryDirectory directory;
    AnswerServer onSocket{socketPath()};
    AnswerServer onPort;

    Outside() {
        setenv("CUPS_SERVERROOT", directory.path().c_str(), 1);
        setenv("CUPS_STATEDIR", directory.path().c_str(), 1);
        setenv("HOME", directory.path().c_str(), 1);
        setenv("CUPS_SERVER", socketPath().c_str(), 1);
        setenv("CUPS_USER", "nobody", 1);
    }

    std::string socketPath() const { return directory.path().string() + "/socket"; }
};

Outside& outside() {
    static Outside world;
    return world;
}

/// Who is asked, and how.
struct Asking {
    std::string server;
    std::string queue;
    CUPSScheduler::Limits limits;
    QueueScheduler::Patience patience = QueueScheduler::Patience::untilCancelled;

    AnswerServer& asked() const {
        return server.empty() || server.starts_with('/') ? outside().onSocket : outside().onPort;
    }

    /// A line each: "time 20", "bytes 100", "cancelled", "finishing".
    void take(std::string_view line) {
        const std::string_view word = takenUpTo(line, " ");
        if (word == "time") {
            limits.time = std::min(limits.time, milliseconds(numberIn(line)));
        } else if (word == "bytes") {
            limits.bytes = numberIn(line);
        } else if (word == "cancelled") {
            isCancelled = true;
            limits.isCancelled = &isCancelled;
        } else if (word == "finishing") {
            patience = QueueScheduler::Patience::finishing;
        }
    }
};

/// Where "socket", nothing, or one of `kPlacesOfThisMachine` is; nothing for any other place.
std::optional<std::string> serverOfText(std::string_view text) {
    if (text.empty()) {
        return "";
    }
    if (text == "socket") {
        return outside().socketPath();
    }
    return std::ranges::find(kPlacesOfThisMachine, text) == kPlacesOfThisMachine.end()
               ? std::nullopt
               : std::optional(placeOfText(text, outside().onPort.port()));
}

void requireFailure(const QueueFailure& failure) {
    require(std::ranges::any_of(kQueueSyncCauses,
                                [&](const QueueSyncCause& cause) { return failure.isOf(cause); }),
            "a failure has one of the causes");
    requireReason(failure.reason);
}

void requireQueue(const std::optional<SchedulerQueue>& queue, const std::string& name,
                  const QueueFailure& failure) {
    if (!queue) {
        requireFailure(failure);
        return;
    }
    require(queue->name == name, "the queue that was asked about");
    require(std::ranges::find(queue->stateReasons, "none") == queue->stateReasons.end(),
            "none is no reason");
}

void requirePPD(const SchedulerPPD& PPD, const CUPSScheduler::Limits& limits,
                const QueueFailure& failure) {
    if (PPD.text) {
        require(!PPD.isRaw, "a queue with a PPD is not raw");
        require(PPD.text->size() <= limits.bytes, "a PPD is no longer than the limit");
        return;
    }
    requireFailure(failure);
    require(PPD.isRaw == failure.isOf(queueSyncCause("no-queue")), "what is not there is not");
}

void install(QueueTalk& talk, const std::string& text, const Asking& asking) {
    const std::size_t before = asking.asked().requests().size();
    QueueFailure failure;
    const auto delivery = talk.install(text, failure);
    const auto requests = asking.asked().requests();
    if (delivery == QueueTalk::Delivery::taken) {
        require(!requests.empty() && requests.back().ends_with(text), "it was sent as a whole");
        return;
    }
    requireFailure(failure);
    require(
        delivery != QueueTalk::Delivery::unknown || failure.isOf(queueSyncCause("no-scheduler")),
        "without an answer there was none");
    if (failure.isOf(queueSyncCause("interrupted"))) {
        require(requests.size() == before, "what is interrupted before is not sent");
    }
}

/// "q" asks for the queue, "p" for its PPD, "i TEXT" installs one, "s REASON|REASON" sets reasons.
void run(QueueTalk& talk, const Operation& operation, const Asking& asking) {
    QueueFailure failure;
    const auto& arguments = operation.arguments;
    switch (operation.letter) {
        case 'q':
            requireQueue(talk.queue(failure), asking.queue, failure);
            break;
        case 'p':
            requirePPD(talk.PPD(failure), asking.limits, failure);
            break;
        case 'i':
            install(talk, bytesOfText(arguments[0].value_or("")), asking);
            break;
        case 's': {
            std::vector<std::string> reasons;
            for (const auto& argument : arguments) {
                if (argument) {
                    reasons.push_back(bytesOfText(*argument));
                }
            }
            if (!talk.setStateReasons(reasons, failure)) {
                requireFailure(failure);
            }
            break;
        }
        default:
            break;
    }
}

void askForNames(const CUPSScheduler& scheduler) {
    QueueFailure failure;
    const auto names = scheduler.queueNames(failure);
    if (!names) {
        requireFailure(failure);
        return;
    }
    require(std::is_sorted(names->begin(), names->end()), "names are in order");
    require(std::ranges::find(*names, "") == names->end(), "each is a name");
}

/// "u" reads the PPD as a source of PPDs does.
void readPPD(const Asking& asking) {
    std::string reason;
    if (!queuePPDsOfCUPS(asking.server)(asking.queue, reason)) {
        requireReason(reason);
    }
}

void talk(const CUPSScheduler& scheduler, const Asking& asking,
          const std::vector<Operation>& operations) {
    int calls = 0;
    QueueFailure failure;
    const bool isWhole = scheduler.talkAbout(
        asking.queue,
        [&](QueueTalk& queue) {
            ++calls;
            for (const Operation& operation : operations) {
                run(queue, operation, asking);
            }
        },
        asking.patience, failure);
    require(calls == 1 || (!isWhole && calls == 0), "a talk is talked once");
    if (!isWhole) {
        requireFailure(failure);
    }
    if (!couldBeQueueName(asking.queue)) {
        require(failure.isOf(queueSyncCause("no-queue")) && calls == 0,
                "a name that could be none is not asked about");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostOperations = 8;
    std::string_view answers = textOfInput(data, size);
    std::string_view head = takenPart(answers);
    const std::string_view operations = takenPart(answers);
    const auto server = serverOfText(takenLine(head));
    if (!server) {
        return 0;
    }
    auto script = AnswerServer::Answer::answersOfInput(answers);
    const bool hasSilence = std::ranges::any_of(script, &AnswerServer::Answer::isSilence);
    isCancelled = false;
    Asking asking{*server, bytesOfText(takenLine(head)), {}};
    // A cancellation is seen after a twentieth of a second.
    asking.limits.time = milliseconds(!hasSilence                                        ? 1000
                                      : head.find("cancelled") == std::string_view::npos ? 20
                                                                                         : 70);
    while (!head.empty()) {
        asking.take(takenLine(head));
    }
    asking.asked().begin(std::move(script));
    const CUPSScheduler scheduler(asking.server, asking.limits);
    require(!scheduler.name().empty(), "the scheduler has a name");
    std::vector<Operation> talked;
    forEachOperation(operations, kMostOperations, [&](const Operation& operation) {
        if (operation.letter == 'n') {
            askForNames(scheduler);
        } else if (operation.letter == 'u' && !hasSilence) {
            readPPD(asking);
        } else {
            talked.push_back(operation);
        }
    });
    talk(scheduler, asking, talked);
    return 0;
}
