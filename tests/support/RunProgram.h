#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating::Testing {

/// What a test gives a program besides its arguments.
struct ProgramSurroundings {
    /// Changes to the test's own environment: a value sets the variable, nothing removes it.
    std::map<std::string, std::optional<std::string>> environment;
    /// What the program reads from its standard input.
    std::string_view standardInput;
    /// The folder in which it runs; the test's own when empty.
    std::string workingDirectory;
    /// A program that takes longer is killed, with all that it started.
    std::chrono::milliseconds timeLimit = std::chrono::seconds(60);
};

/// How a program ended and what it wrote.
struct ProgramResult {
    /// The exit status; for a program that a signal ended 128 plus the signal, as a shell says it.
    int exitStatus = -1;
    bool timedOut = false;
    std::string standardOutput;
    std::string standardError;
};

/// Runs a program and waits for its end. `command` is the program (looked up in PATH when there is
/// no slash in it) and its arguments; no shell is between. Raises std::system_error when the
/// program cannot be started. May be called from several threads.
ProgramResult runProgram(const std::vector<std::string>& command,
                         const ProgramSurroundings& surroundings = {});

}  // namespace TkPPDUpdating::Testing
