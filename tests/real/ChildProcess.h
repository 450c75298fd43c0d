#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

namespace TkPPDUpdating::Testing {

/// A program that runs beside the test and is killed with it, however the test ends.
class ChildProcess {
  public:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    /// Starts the program at `arguments[0]`, searched in the system's folders; its output goes to
    /// the file at `outputPath`. To be called on a thread that lives as long as the object.
    ChildProcess(const std::vector<std::string>& arguments, const std::string& outputPath,
                 const Environment& environment = {});
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { stop(); }

    bool isRunning();
    pid_t id() const { return id_; }

    /// Sends a signal to it.
    void signal(int number) const;

    /// Kills it and waits for its end.
    void stop();

    /// Waits for its end and gives its exit status; 128 and the signal's number when it was killed.
    int wait();

  private:
    pid_t id_ = -1;
    int exitStatus_ = -1;
};

/// The path of a program in the system's folders; empty when it is not installed.
std::string pathOfProgram(const std::string& name);

}  // namespace TkPPDUpdating::Testing
