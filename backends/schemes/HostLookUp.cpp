#include "backends/schemes/HostLookUp.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <sstream>
#include <system_error>

#include "text/FileDescriptor.h"

namespace TkPPDUpdating {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kProgram = "/usr/bin/getent";
constexpr std::size_t kMostBytes = std::size_t{1} << 16U;

bool isAddress(const std::string& host) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_flags = AI_NUMERICHOST;
    addrinfo* list = nullptr;
    const bool isNumeric = getaddrinfo(host.c_str(), nullptr, &hints, &list) == 0;
    if (isNumeric) {
        freeaddrinfo(list);
    }
    return isNumeric;
}

/// getent(1) at work on one name. It is gone at the end of the scope.
class LookUp {
  public:
    explicit LookUp(const std::string& host) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            error_ = errno;
            return;
        }
        output_ = FileDescriptor(ends[0]);
        const FileDescriptor writeEnd(ends[1]);
        error_ = start(host, writeEnd.get());
    }
    LookUp(const LookUp&) = delete;
    LookUp& operator=(const LookUp&) = delete;
    ~LookUp() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            while (::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
            }
        }
    }

    /// Why it could not be started (errno); 0 when it was.
    int error() const { return error_; }
    const std::string& text() const { return text_; }

    /// Reads what it has to say; false when it is over.
    bool read(int milliseconds) {
        pollfd waiting{output_.get(), POLLIN, 0};
        if (::poll(&waiting, 1, milliseconds) <= 0) {
            return true;
        }
        std::array<char, 4096> part{};
        const ssize_t count = ::read(output_.get(), part.data(), part.size());
        text_.append(part.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        return (count > 0 || (count < 0 && errno == EINTR)) && text_.size() < kMostBytes;
    }

  private:
    int start(const std::string& host, int output) {
        posix_spawn_file_actions_t actions;
        if (const int error = posix_spawn_file_actions_init(&actions)) {
            return error;
        }
        std::string program = kProgram;
        std::string database = "ahosts";
        std::string mark = "--";
        std::string name = host;
        const std::array<char*, 5> arguments = {program.data(), database.data(), mark.data(),
                                                name.data(), nullptr};
        int error =
            posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        error = error ? error : posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        error = error ? error
                      : posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null",
                                                         O_WRONLY, 0);
        error =
            error ? error
                  : posix_spawn(&process_, kProgram, &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        process_ = error ? -1 : process_;
        return error;
    }

    FileDescriptor output_;
    pid_t process_ = -1;
    int error_ = 0;
    std::string text_;
};

/// Of "ADDRESS TYPE NAME" lines; the same address comes once for each type of socket.
std::vector<std::string> addressesIn(const std::string& text) {
    std::vector<std::string> addresses;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::string address = line.substr(0, line.find(' '));
        if (std::ranges::find(addresses, address) == addresses.end() && isAddress(address)) {
            addresses.push_back(std::move(address));
        }
    }
    return addresses;
}

}  // namespace

std::vector<std::string> addressesOfHostName(const std::string& host, Clock::time_point deadline,
                                             const std::atomic<bool>* isCancelled,
                                             OrbCSError& error) {
    // Whoever cancels can set a flag but wake nobody.
    constexpr int kPause = 20;
    if (isAddress(host)) {
        return {host};
    }
    LookUp lookUp(host);
    if (lookUp.error() != 0) {
        error = {OrbCSError::Cause::unknown, "its name cannot be looked up by getent: " +
                                                 std::generic_category().message(lookUp.error())};
        return {};
    }
    do {
        if (isCancelled && *isCancelled) {
            error = {OrbCSError::Cause::cancelled, "interrupted"};
            return {};
        }
        if (Clock::now() >= deadline) {
            error = {OrbCSError::Cause::timeout, "its name was not found in time"};
            return {};
        }
    } while (lookUp.read(kPause));
    auto addresses = addressesIn(lookUp.text());
    if (addresses.empty()) {
        error = {OrbCSError::Cause::unknownHost, "its name is not known"};
    }
    return addresses;
}

}  // namespace TkPPDUpdating
