#include "tests/tools/ToolRun.h"

#include <algorithm>

#include "tests/support/RunProgram.h"

namespace TkPPDUpdating::Testing {

ToolRun runCommand(std::vector<std::string> command, const ToolSurroundings& surroundings) {
    ProgramSurroundings ownSurroundings;
    for (const char* heeded :
         {"NO_COLOR", "TERM", "LC_ALL", "LC_PAPER", "LC_MESSAGES", "LANG", "CUPS_SERVER",
          "CUPS_SERVERROOT", "ZrCurrentLocaleIdentifier", "ZrEPRLastUpdateTime", "JOURNAL_STREAM",
          "PATCH_GET", "POSIXLY_CORRECT"}) {
        ownSurroundings.environment[heeded] = std::nullopt;
    }
    for (const auto& [name, value] : surroundings.environment) {
        ownSurroundings.environment[name] = value;
    }
    ownSurroundings.workingDirectory = surroundings.directory;
    if (!surroundings.redirection.empty()) {
        const std::string script = "exec \"$@\" " + surroundings.redirection;
        command.insert(command.begin(), {"sh", "-c", script, "sh"});
    }
    ProgramResult result = runProgram(command, ownSurroundings);
    return {result.exitStatus, std::move(result.standardOutput), std::move(result.standardError)};
}

ToolRun runTool(std::vector<std::string> arguments, const ToolSurroundings& surroundings) {
    arguments.insert(arguments.begin(), TKPPDUPDATING_TOOL);
    return runCommand(std::move(arguments), surroundings);
}

std::size_t lineCount(const std::string& text) {
    const auto lineFeeds = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    return lineFeeds + (text.empty() || text.ends_with('\n') ? 0 : 1);
}

}  // namespace TkPPDUpdating::Testing
