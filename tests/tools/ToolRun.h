#pragma once

#include <map>
#include <string>
#include <vector>

namespace TkPPDUpdating::Testing {

/// How the tool ended and what it wrote.
struct ToolRun {
    /// 128 and the signal's number when a signal ended it.
    int exitStatus = -1;
    std::string output;
    std::string errors;
};

/// What the tool runs with beside its arguments.
struct ToolSurroundings {
    /// Set for the tool, from whose environment everything that it heeds is removed first.
    std::map<std::string, std::string> environment = {};
    /// The working directory; the tests' own when empty.
    std::string directory = {};
    /// Where standard output leads, as a shell's redirection: ">/dev/full", ">&-". What is written
    /// there is then not in `output`.
    std::string redirection = {};
};

/// Runs a program that is looked up in PATH, or the tkppdupdate that was built, to its end.
ToolRun runCommand(std::vector<std::string> command, const ToolSurroundings& surroundings = {});
ToolRun runTool(std::vector<std::string> arguments, const ToolSurroundings& surroundings = {});

/// How many lines a text has, the last one with or without its line feed.
std::size_t lineCount(const std::string& text);

}  // namespace TkPPDUpdating::Testing
