#include "tests/support/RunProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>
#include <system_error>
#include <utility>

#include "text/FileDescriptor.h"

namespace TkPPDUpdating::Testing {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

void check(int error, const char* what) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

/// One of the program's outputs: the end that the program writes, the end that we read, what came.
struct Output {
    explicit Output(std::string& destination) : text(destination) {
        std::array<int, 2> ends{};
        // Closed on exec, so that no other program that runs at the same time keeps it open.
        check(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "pipe");
        readEnd = FileDescriptor(ends[0]);
        writeEnd = FileDescriptor(ends[1]);
        check(::fcntl(readEnd.get(), F_SETFL, O_NONBLOCK) == 0 ? 0 : errno, "fcntl");
    }

    void readAvailable() {
        std::array<char, 65536> buffer{};
        ssize_t count = 0;
        while (readEnd.get() >= 0) {
            count = ::read(readEnd.get(), buffer.data(), buffer.size());
            if (count > 0) {
                text.append(buffer.data(), static_cast<std::size_t>(count));
            } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
                readEnd.close();
            } else if (errno == EAGAIN) {
                return;
            }
        }
    }

    std::string& text;
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

class FileActions {
  public:
    FileActions() { check(posix_spawn_file_actions_init(&actions_), "file actions"); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

    void redirect(int from, int to) {
        check(posix_spawn_file_actions_adddup2(&actions_, from, to), "dup2");
    }
    void changeDirectory(const std::string& directory) {
        check(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()), "chdir");
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

/// A process group of its own, so that a program that hangs is killed with all that it started.
class OwnProcessGroup {
  public:
    OwnProcessGroup() {
        check(posix_spawnattr_init(&attributes_), "spawn attributes");
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP);
        posix_spawnattr_setpgroup(&attributes_, 0);
    }
    OwnProcessGroup(const OwnProcessGroup&) = delete;
    OwnProcessGroup& operator=(const OwnProcessGroup&) = delete;
    ~OwnProcessGroup() { posix_spawnattr_destroy(&attributes_); }

    const posix_spawnattr_t* get() const { return &attributes_; }

  private:
    posix_spawnattr_t attributes_{};
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(
    const std::map<std::string, std::optional<std::string>>& changes) {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text(*variable);
        if (!changes.contains(std::string(text.substr(0, text.find('='))))) {
            variables.emplace_back(text);
        }
    }
    for (const auto& [name, value] : changes) {
        if (value) {
            variables.push_back(name + '=' + *value);
        }
    }
    return variables;
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// A file without a name: the program may read it or leave it, and never keeps us waiting.
File fileHolding(std::string_view text) {
    File file(std::tmpfile(), &std::fclose);
    check(file ? 0 : errno, "standard input");
    // An empty view may have no address.
    if (!text.empty() && std::fwrite(text.data(), 1, text.size(), file.get()) != text.size()) {
        check(errno, "standard input");
    }
    check(std::fflush(file.get()) == 0 ? 0 : errno, "standard input");
    std::rewind(file.get());
    return file;
}

pid_t start(const std::vector<std::string>& command, const ProgramSurroundings& surroundings,
            Output& standardOutput, Output& standardError) {
    const File standardInput = fileHolding(surroundings.standardInput);
    FileActions actions;
    actions.redirect(fileno(standardInput.get()), STDIN_FILENO);
    actions.redirect(standardOutput.writeEnd.get(), STDOUT_FILENO);
    actions.redirect(standardError.writeEnd.get(), STDERR_FILENO);
    if (!surroundings.workingDirectory.empty()) {
        actions.changeDirectory(surroundings.workingDirectory);
    }
    const OwnProcessGroup group;
    std::vector<std::string> arguments = command;
    std::vector<std::string> variables = environmentWith(surroundings.environment);
    pid_t process = -1;
    check(posix_spawnp(&process, command.at(0).c_str(), actions.get(), group.get(),
                       pointersTo(arguments).data(), pointersTo(variables).data()),
          command.at(0).c_str());
    standardOutput.writeEnd.close();
    standardError.writeEnd.close();
    return process;
}

/// A file that can be read from the program's end on (pidfd_open(2), Linux 5.3); none where the
/// system has no such thing, as in some containers.
FileDescriptor endOf(pid_t process) {
    return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0U)));
}

/// Waits until something can be read, the program has ended, or the time is over.
void waitForOutput(const Output& standardOutput, const Output& standardError,
                   const FileDescriptor& end, milliseconds time) {
    constexpr milliseconds kPause{5};
    std::array<pollfd, 3> descriptors{{{standardOutput.readEnd.get(), POLLIN, 0},
                                       {standardError.readEnd.get(), POLLIN, 0},
                                       {end.get(), POLLIN, 0}}};
    const milliseconds limit = end.get() < 0 ? kPause : std::max(time, kPause);
    ::poll(descriptors.data(), descriptors.size(), static_cast<int>(limit.count()));
}

int exitStatusOf(int waitStatus) {
    return WIFSIGNALED(waitStatus) ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

}  // namespace

ProgramResult runProgram(const std::vector<std::string>& command,
                         const ProgramSurroundings& surroundings) {
    ProgramResult result;
    Output standardOutput(result.standardOutput);
    Output standardError(result.standardError);
    const Clock::time_point deadline = Clock::now() + surroundings.timeLimit;
    const pid_t process = start(command, surroundings, standardOutput, standardError);
    const FileDescriptor end = endOf(process);

    // The outputs may stay open after the program's end, in a process that it left behind.
    int waitStatus = 0;
    pid_t ended = 0;
    while ((ended = ::waitpid(process, &waitStatus, WNOHANG)) == 0) {
        if (!result.timedOut && Clock::now() >= deadline) {
            result.timedOut = true;
            ::kill(-process, SIGKILL);
        }
        waitForOutput(standardOutput, standardError, end,
                      std::chrono::ceil<milliseconds>(deadline - Clock::now()));
        standardOutput.readAvailable();
        standardError.readAvailable();
    }
    check(ended == process ? 0 : errno, "waitpid");
    standardOutput.readAvailable();
    standardError.readAvailable();
    result.exitStatus = exitStatusOf(waitStatus);
    return result;
}

}  // namespace TkPPDUpdating::Testing
