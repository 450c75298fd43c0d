#include "fuzz/AnswerServer.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <utility>

#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/TalkInput.h"
#include "text/ASCII.h"

// What sanitizers are told, where there are any. libcups 2.4 frees what it decompresses an answer
// with when all is decompressed, and never when it cannot be.
extern "C" {
const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)

const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
    return "leak:inflateInit2_\n";
}
}

namespace TkPPDUpdating::Fuzzing {

namespace {

constexpr std::string_view kEndOfHead = "\r\n\r\n";

/// How many bytes a request has behind its head.
std::size_t lengthOfBody(std::string_view head) {
    const std::string lowerCase = textInASCIILowerCase(head);
    constexpr std::string_view kField = "\ncontent-length:";
    const std::size_t field = lowerCase.find(kField);
    return field == std::string::npos
               ? 0
               : std::strtoul(lowerCase.c_str() + field + kField.size(), nullptr, 10);
}

/// Whether all of it has come. What is no HTTP, as the beginning of TLS, is taken as it comes.
bool isWhole(std::string_view request) {
    if (!request.empty() && !isASCIILetter(request.front())) {
        return true;
    }
    const std::size_t head = request.find(kEndOfHead);
    return head != std::string_view::npos &&
           request.size() >= head + kEndOfHead.size() + lengthOfBody(request.substr(0, head));
}

/// Whether the head of the request has come, which asks whether all of it is wanted, and something
/// of the rest (RFC 9110, section 10.1.1).
bool asksWhetherToGoOn(std::string_view request) {
    const std::size_t head = request.find(kEndOfHead);
    return head != std::string_view::npos && request.size() > head + kEndOfHead.size() &&
           textInASCIILowerCase(request.substr(0, head)).find("\nexpect: 100-continue") !=
               std::string::npos;
}

/// Whether the other side knows from the head where the answer ends.
bool isEndTold(std::string_view head) {
    return head.starts_with("HTTP/1.1 ") && !head.starts_with("HTTP/1.1 1") &&
           textInASCIILowerCase(head).find("transfer-encoding") == std::string::npos;
}

int listening(const sockaddr* address, socklen_t length) {
    constexpr int kBacklog = 64;
    const int listener = socket(address->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    require(bind(listener, address, length) == 0 && listen(listener, kBacklog) == 0,
            "the server can listen");
    return listener;
}

}  // namespace

AnswerServer::Answer AnswerServer::Answer::answerOfText(std::string_view text) {
    if (text == "silence") {
        return {{}, true, true};
    }
    constexpr std::string_view kLengthToFillIn = "\nContent-Length: *";
    constexpr std::string_view kEmptyLine = "\n\n";
    std::string head = bytesOfText(takenUpTo(text, kEmptyLine));
    const std::string body = bytesOfText(text);
    Answer answer;
    if (const std::size_t field = head.find(kLengthToFillIn); field != std::string::npos) {
        head.replace(field + kLengthToFillIn.size() - 1, 1, std::to_string(body.size()));
        answer.isLast = !isEndTold(head);
    }
    answer.bytes = head + std::string(kEmptyLine) + body;
    return answer;
}

std::deque<AnswerServer::Answer> AnswerServer::Answer::answersOfInput(std::string_view input) {
    constexpr std::size_t kMostAnswers = 12;
    std::deque<Answer> answers;
    while (!input.empty() && answers.size() < kMostAnswers) {
        answers.push_back(answerOfText(takenPart(input)));
    }
    return answers;
}

AnswerServer::AnswerServer() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    listener_ = listening(reinterpret_cast<const sockaddr*>(&address), length);
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
    port_ = ntohs(address.sin_port);
    server_ = std::thread([this] { serve(); });
}

AnswerServer::AnswerServer(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    listener_ = listening(reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    server_ = std::thread([this] { serve(); });
}

AnswerServer::~AnswerServer() {
    isEnding_ = true;
    shutdown(listener_, SHUT_RDWR);
    server_.join();
    close(listener_);
}

void AnswerServer::begin(std::deque<Answer> answers) {
    const std::lock_guard lock(mutex_);
    answers_ = std::move(answers);
    requests_.clear();
}

std::vector<std::string> AnswerServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void AnswerServer::serve() {
    while (!isEnding_) {
        const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection >= 0) {
            serve(connection);
            close(connection);
        }
    }
}

void AnswerServer::serve(int connection) {
    for (;;) {
        auto request = requestFrom(connection);
        const auto answer = request ? answerTo(*std::move(request)) : std::nullopt;
        if (answer && answer->isSilence) {
            waitForClose(connection);
        }
        const bool isSent =
            answer && send(connection, answer->bytes.data(), answer->bytes.size(), MSG_NOSIGNAL) ==
                          static_cast<ssize_t>(answer->bytes.size());
        if (!isSent || answer->isLast) {
            return;
        }
    }
}

/// The next request; nothing when the other side closes the connection, or waits itself.
std::optional<std::string> AnswerServer::requestFrom(int connection) const {
    constexpr int kPatience = 200;
    constexpr std::string_view kGoOn = "HTTP/1.1 100 Continue\r\n\r\n";
    bool isToldToGoOn = false;
    std::string request;
    std::array<char, 8192> buffer{};
    while (!isWhole(request)) {
        if (!isToldToGoOn && asksWhetherToGoOn(request)) {
            if (!takesWhole()) {
                return request;
            }
            isToldToGoOn = true;
            (void)send(connection, kGoOn.data(), kGoOn.size(), MSG_NOSIGNAL);
        }
        pollfd waiting{connection, POLLIN, 0};
        const ssize_t count = poll(&waiting, 1, kPatience) > 0
                                  ? recv(connection, buffer.data(), buffer.size(), 0)
                                  : 0;
        if (count <= 0) {
            return std::nullopt;
        }
        request.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return request;
}

/// Whether the next answer is one to a whole request, as those of success are.
bool AnswerServer::takesWhole() const {
    const std::lock_guard lock(mutex_);
    std::string_view answer = answers_.empty() ? std::string_view() : answers_.front().bytes;
    return takenUpTo(answer, " ").starts_with("HTTP/") && answer.starts_with('2');
}

std::optional<AnswerServer::Answer> AnswerServer::answerTo(std::string request) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(std::move(request));
    if (answers_.empty()) {
        return std::nullopt;
    }
    Answer answer = std::move(answers_.front());
    answers_.pop_front();
    answer.isLast = answer.isLast || !isWhole(requests_.back());
    return answer;
}

void AnswerServer::waitForClose(int connection) const {
    constexpr int kPause = 20;
    pollfd closing{connection, POLLRDHUP, 0};
    while (!isEnding_ && poll(&closing, 1, kPause) == 0) {
    }
}

}  // namespace TkPPDUpdating::Fuzzing
