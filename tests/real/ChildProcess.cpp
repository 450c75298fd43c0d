#include "tests/real/ChildProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace TkPPDUpdating::Testing {

namespace {

[[noreturn]] void becomeProgram(const std::string& path, std::vector<char*> arguments,
                                const std::string& outputPath, pid_t parent,
                                const ChildProcess::Environment& environment) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(127);
    }
    const int output = open(outputPath.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    const int input = open("/dev/null", O_RDONLY);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    for (const auto& [name, value] : environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    execv(path.c_str(), arguments.data());
    _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const std::string& outputPath,
                           const Environment& environment) {
    const std::string path = pathOfProgram(arguments.front());
    std::vector<std::string> copies = arguments;
    std::vector<char*> pointers;
    pointers.reserve(copies.size() + 1);
    for (std::string& argument : copies) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    const pid_t parent = getpid();
    id_ = fork();
    if (id_ < 0) {
        throw std::runtime_error("no process for " + arguments.front());
    }
    if (id_ == 0) {
        becomeProgram(path, pointers, outputPath, parent, environment);
    }
}

bool ChildProcess::isRunning() {
    if (id_ > 0) {
        int status = 0;
        if (waitpid(id_, &status, WNOHANG) == id_) {
            exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            id_ = -1;
        }
    }
    return id_ > 0;
}

void ChildProcess::signal(int number) const {
    if (id_ > 0) {
        kill(id_, number);
    }
}

void ChildProcess::stop() {
    signal(SIGKILL);
    wait();
}

int ChildProcess::wait() {
    if (id_ > 0) {
        int status = 0;
        waitpid(id_, &status, 0);
        exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        id_ = -1;
    }
    return exitStatus_;
}

std::string pathOfProgram(const std::string& name) {
    if (name.find('/') != std::string::npos) {
        return name;
    }
    for (const char* folder : {"/usr/sbin/", "/usr/bin/", "/sbin/", "/bin/", "/usr/local/bin/"}) {
        if (access((folder + name).c_str(), X_OK) == 0) {
            return folder + name;
        }
    }
    return {};
}

}  // namespace TkPPDUpdating::Testing
