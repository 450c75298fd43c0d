#include "tools/DiffProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <vector>

#include "text/FileDescriptor.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

namespace {

std::string reasonForError(int error) {
    return std::generic_category().message(error);
}

/// A file in memory, without a name in any folder, which no other program inherits.
class MemoryFile {
  public:
    explicit MemoryFile(std::string_view contents = {})
        : file_(::memfd_create("diff", MFD_CLOEXEC)) {
        if (!file_.isOpen() || !writeAll(file_.get(), contents)) {
            throw std::system_error(errno, std::generic_category());
        }
    }

    int descriptor() const { return file_.get(); }

    /// A path that leads a process to it which has it open by the same number.
    std::string path() const { return "/dev/fd/" + std::to_string(descriptor()); }

    std::string contents() const {
        std::string contents;
        std::array<char, 65536> block{};
        ssize_t length = 0;
        while ((length = ::pread(descriptor(), block.data(), block.size(),
                                 static_cast<off_t>(contents.size()))) > 0) {
            contents.append(block.data(), static_cast<std::size_t>(length));
        }
        if (length < 0) {
            throw std::system_error(errno, std::generic_category());
        }
        return contents;
    }

  private:
    FileDescriptor file_;
};

/// How a program is started (POSIX, posix_spawn).
class Start {
  public:
    Start() {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawnattr_init(&attributes_);
        // A group of its own: a key that interrupts the run at a terminal is for this process,
        // which finishes what it has begun.
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP);
        ::posix_spawnattr_setpgroup(&attributes_, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    Start(const Start&) = delete;
    Start& operator=(const Start&) = delete;
    ~Start() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&actions_);
    }

    /// Lets it have an open file, by the number that it shall have there.
    void hand(const MemoryFile& file, int number) {
        ::posix_spawn_file_actions_adddup2(&actions_, file.descriptor(), number);
    }

    /// Runs the program to its end and gives its wait status (POSIX, waitpid). `error` becomes the
    /// number of the error when it cannot be started.
    int run(const std::vector<std::string>& command, int& error) const {
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (const std::string& argument : command) {
            arguments.push_back(const_cast<char*>(argument.c_str()));
        }
        arguments.push_back(nullptr);
        // In the words of no language, and with nothing else that it might heed.
        std::string locale = "LC_ALL=C";
        const std::array<char*, 2> environment = {locale.data(), nullptr};
        // A caller that ignores the end of its children has made this process do so, too: how they
        // ended would be lost (POSIX, waitpid).
        (void)::signal(SIGCHLD, SIG_DFL);
        pid_t process = 0;
        error = ::posix_spawn(&process, command.front().c_str(), &actions_, &attributes_,
                              arguments.data(), environment.data());
        int status = 0;
        while (error == 0 && ::waitpid(process, &status, 0) < 0) {
            error = errno == EINTR ? 0 : errno;
        }
        return status;
    }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

/// Empty when diff(1) has compared the files: it ends with 0 for equal ones, 1 for others.
std::string reasonForEnd(int status, const MemoryFile& messages) {
    if (WIFEXITED(status) && WEXITSTATUS(status) <= 1) {
        return {};
    }
    if (WIFSIGNALED(status)) {
        return "signal " + std::to_string(WTERMSIG(status)) + " ended it";
    }
    const std::string message = messages.contents();
    return message.empty() ? "it ends with status " + std::to_string(WEXITSTATUS(status))
                           : message.substr(0, message.find('\n'));
}

/// A text from its third line on.
std::string withoutHeader(const std::string& diff) {
    std::size_t start = 0;
    for (int line = 0; line < 2 && start < diff.size(); ++line) {
        const std::size_t end = diff.find('\n', start);
        start = end == std::string::npos ? diff.size() : end + 1;
    }
    return diff.substr(start);
}

}  // namespace

std::string DiffProgram::hunks(const std::string& name, std::string_view before,
                               std::string_view after) const {
    std::string reason;
    try {
        const MemoryFile old(before);
        const MemoryFile updated(after);
        const MemoryFile output;
        const MemoryFile messages;
        Start start;
        start.hand(output, STDOUT_FILENO);
        start.hand(messages, STDERR_FILENO);
        for (const MemoryFile* file : {&old, &updated}) {
            start.hand(*file, file->descriptor());
        }
        int error = 0;
        const int status = start.run(
            {path_, "-a", "-U", "3", "-L", "before", "-L", "after", old.path(), updated.path()},
            error);
        reason = error != 0 ? reasonForError(error) : reasonForEnd(status, messages);
        if (reason.empty()) {
            return withoutHeader(output.contents());
        }
    } catch (const std::system_error& error) {
        reason = reasonForError(error.code().value());
    }
    throw Failure(ExitStatus::noResult, name, "cannot be compared by " + path_ + ": " + reason);
}

}  // namespace TkPPDUpdating
