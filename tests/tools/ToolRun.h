#pragma once

#include <map>
#include <string>
#include <vector>

namespace TkPPDUpdating::Testing {

/// How a program ended and what it wrote.
struct ToolRun {
    /// 128 and the signal's number when a signal ended it.
    int exitStatus = -1;
    std::string output;
    std::string errors;
};

/// What a program runs with beside its arguments.
struct ToolSurroundings {
    /// Added to PATH and the sanitizers' settings, which is all that a program gets of the tests'
    /// own environment.
    std::map<std::string, std::string> environment = {};
    /// The working directory; the tests' own when empty.
    std::string directory = {};
    /// Where standard output leads; what is written there is then not in `output`.
    std::string outputPath = {};
    bool outputIsClosed = false;
};

/// Runs a program (an absolute path, or found on PATH) to its end.
ToolRun runProgram(const std::string& program, std::vector<std::string> arguments,
                   const ToolSurroundings& surroundings = {});

/// Runs the tkppdupdate that was built.
ToolRun runTool(std::vector<std::string> arguments, const ToolSurroundings& surroundings = {});

/// How many lines a text has, the last one with or without its line feed.
std::size_t lineCount(const std::string& text);

std::string contentsOfFile(const std::string& path);

/// The path of a file of the samples: "ppd/zr-office.ppd".
std::string samplePath(const std::string& relativePath);

}  // namespace TkPPDUpdating::Testing
