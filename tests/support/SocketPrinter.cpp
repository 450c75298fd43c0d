#include "tests/support/SocketPrinter.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace TkPPDUpdating::Testing {

namespace {

constexpr int kPauseInMilliseconds = 20;

bool isReadable(int descriptor) {
    pollfd entry{descriptor, POLLIN, 0};
    return poll(&entry, 1, kPauseInMilliseconds) > 0;
}

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

std::optional<std::string> SocketTalk::next() const {
    std::array<char, 4096> bytes{};
    while (!isOver_) {
        if (!isReadable(socket_)) {
            continue;
        }
        const ssize_t count = recv(socket_, bytes.data(), bytes.size(), 0);
        return count > 0 ? std::optional(std::string(bytes.data(), static_cast<std::size_t>(count)))
                         : std::nullopt;
    }
    return std::nullopt;
}

bool SocketTalk::send(std::string_view bytes) const {
    while (!bytes.empty() && !isOver_) {
        pollfd entry{socket_, POLLOUT, 0};
        if (poll(&entry, 1, kPauseInMilliseconds) <= 0) {
            continue;
        }
        const ssize_t count =
            ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return bytes.empty();
}

bool SocketTalk::pause(std::chrono::milliseconds time) const {
    const auto until = std::chrono::steady_clock::now() + time;
    while (!isOver_ && std::chrono::steady_clock::now() < until) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return !isOver_;
}

SocketPrinter::SocketPrinter(Conduct conduct)
    : conduct_(std::move(conduct)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const name = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_.get(), name, length) != 0 || listen(listener_.get(), 8) != 0 ||
        getsockname(listener_.get(), name, &length) != 0) {
        fail("no port to listen on");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::jthread([this] { serve(); });
}

SocketPrinter::~SocketPrinter() {
    isOver_ = true;
}

void SocketPrinter::serve() {
    while (!isOver_) {
        if (!isReadable(listener_.get())) {
            continue;
        }
        const FileDescriptor connection(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (connection.isOpen()) {
            ++connections_;
            conduct_(SocketTalk(connection.get(), isOver_));
        }
    }
}

/// A Ghostscript that waits for a job.
class PostScriptPrinter::Interpreter {
  public:
    explicit Interpreter(const std::string& setup) {
        std::array<int, 2> input{};
        std::array<int, 2> output{};
        if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) {
            fail("no pipe");
        }
        const FileDescriptor itsInput(input[0]);
        const FileDescriptor itsOutput(output[1]);
        input_ = FileDescriptor(input[1]);
        output_ = FileDescriptor(output[0]);
        start(itsInput.get(), itsOutput.get());
        write(setup + "\n(started\\n) print flush\n");
        std::string said;
        while (said.find("started") == std::string::npos) {
            const auto more = read();
            if (!more) {
                throw std::runtime_error("Ghostscript does not start: " + said);
            }
            said += *more;
        }
    }
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;
    ~Interpreter() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }

    void write(const std::string& text) const { (void)writeAll(input_.get(), text); }

    bool hasOutput() const { return isReadable(output_.get()); }

    /// Nothing when it has ended.
    std::optional<std::string> read() const {
        std::array<char, 4096> bytes{};
        const ssize_t count = ::read(output_.get(), bytes.data(), bytes.size());
        return count > 0 ? std::optional(std::string(bytes.data(), static_cast<std::size_t>(count)))
                         : std::nullopt;
    }

  private:
    void start(int input, int output) {
        // What it reads as its input file ("-") it runs only when a buffer is full.
        std::array<std::string, 9> words = {"gs",
                                            "-q",
                                            "-dNOPAUSE",
                                            "-dBATCH",
                                            "-dSAFER",
                                            "-sDEVICE=ljet4d",
                                            "-sOutputFile=/dev/null",
                                            "-c",
                                            "(%stdin) (r) file cvx exec"};
        std::array<char*, 10> arguments{};
        for (std::size_t index = 0; index < words.size(); ++index) {
            arguments[index] = words[index].data();
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
        const int failure =
            posix_spawnp(&process_, "gs", &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (failure != 0) {
            throw std::runtime_error("Ghostscript cannot be started");
        }
    }

    pid_t process_ = -1;
    FileDescriptor input_;
    FileDescriptor output_;
};

std::string PostScriptPrinter::missingPrograms() {
    return access("/usr/bin/gs", X_OK) == 0 ? "" : "not installed: ghostscript";
}

PostScriptPrinter::PostScriptPrinter(const std::string& setup, int jobs) {
    // Whoever no longer reads ends a write by an error.
    std::signal(SIGPIPE, SIG_IGN);
    for (int count = 0; count < jobs; ++count) {
        ready_.push_back(std::make_unique<Interpreter>(setup));
    }
    printer_ = std::make_unique<SocketPrinter>([this](const SocketTalk& talk) { print(talk); });
    URI_ = printer_->URI();
}

PostScriptPrinter::~PostScriptPrinter() = default;

std::string PostScriptPrinter::received() const {
    const std::lock_guard lock(mutex_);
    return received_;
}

void PostScriptPrinter::print(const SocketTalk& talk) {
    if (ready_.empty()) {
        return;
    }
    const auto interpreter = std::move(ready_.back());
    ready_.pop_back();
    std::jthread answers([&](const std::stop_token& isOver) {
        while (!isOver.stop_requested()) {
            if (interpreter->hasOutput()) {
                const auto bytes = interpreter->read();
                if (!bytes || !talk.send(*bytes)) {
                    return;
                }
            }
        }
    });
    // Lines of the job language are not PostScript.
    std::string line;
    while (const auto bytes = talk.next()) {
        {
            const std::lock_guard lock(mutex_);
            received_ += *bytes;
        }
        line += *bytes;
        for (std::size_t end = line.find('\n'); end != std::string::npos; end = line.find('\n')) {
            const bool isOfJobLanguage = line.starts_with("@PJL") || line.starts_with('\x1B');
            if (!isOfJobLanguage) {
                interpreter->write(line.substr(0, end + 1));
            }
            line.erase(0, end + 1);
        }
    }
}

}  // namespace TkPPDUpdating::Testing
