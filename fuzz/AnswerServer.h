#pragma once

#include <atomic>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace TkPPDUpdating::Fuzzing {

/// An HTTP server that gives each request the next of the answers of an input. One serves all
/// inputs of a process, one connection after the other, and nobody has to wait for it: with no
/// answer left it closes the connection. A request that asks for it is told to go on unless its
/// answer is none of success.
class AnswerServer {
  public:
    struct Answer {
        std::string bytes;
        /// Whether the connection takes another request afterwards.
        bool isLast = true;
        /// Whether nothing is said until the other side closes the connection.
        bool isSilence = false;

        /// "silence", or an answer whose lines end with a line feed alone, with escapes
        /// (`bytesOfText`). "Content-Length: *" is filled in, and then the connection is kept;
        /// otherwise it is closed, so that the other side never waits for more.
        static Answer answerOfText(std::string_view text);
        /// All that an input has, with lines "====" between them; what is beyond a few is left out.
        static std::deque<Answer> answersOfInput(std::string_view input);
    };

    /// Listens on a free port of 127.0.0.1.
    AnswerServer();
    /// Listens on a domain socket.
    explicit AnswerServer(const std::string& path);
    AnswerServer(const AnswerServer&) = delete;
    AnswerServer& operator=(const AnswerServer&) = delete;
    ~AnswerServer();

    /// 0 for a domain socket.
    int port() const { return port_; }

    /// Takes the answers for what is asked from here on, and forgets what was asked before.
    void begin(std::deque<Answer> answers);
    /// What was asked since then.
    std::vector<std::string> requests() const;

  private:
    void serve();
    void serve(int connection);
    std::optional<std::string> requestFrom(int connection) const;
    bool takesWhole() const;
    std::optional<Answer> answerTo(std::string request);
    void waitForClose(int connection) const;

    int listener_;
    int port_ = 0;
    std::atomic<bool> isEnding_{false};
    mutable std::mutex mutex_;
    std::deque<Answer> answers_;
    std::vector<std::string> requests_;
    std::thread server_;
};

}  // namespace TkPPDUpdating::Fuzzing
