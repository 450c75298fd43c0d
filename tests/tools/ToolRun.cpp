#include "tests/tools/ToolRun.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {

namespace {

class SpawnActions {
  public:
    SpawnActions() { posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

    void redirect(int stream, const std::string& path) {
        posix_spawn_file_actions_addopen(&actions_, stream, path.c_str(),
                                         O_WRONLY | O_CREAT | O_APPEND, 0666);
    }
    posix_spawn_file_actions_t* get() { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

std::vector<std::string> environmentOf(const ToolSurroundings& surroundings) {
    std::map<std::string, std::string> variables;
    for (const char* name : {"PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (const char* value = std::getenv(name)) {
            variables[name] = value;
        }
    }
    for (const auto& [name, value] : surroundings.environment) {
        variables[name] = value;
    }
    std::vector<std::string> lines;
    for (const auto& [name, value] : variables) {
        lines.push_back(name + "=" + value);
    }
    return lines;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

ToolRun runProgram(const std::string& program, std::vector<std::string> arguments,
                   const ToolSurroundings& surroundings) {
    const TemporaryDirectory scratch;
    const std::string outputPath = scratch.write("output", "");
    const std::string errorsPath = scratch.write("errors", "");
    SpawnActions actions;
    if (surroundings.outputIsClosed) {
        posix_spawn_file_actions_addclose(actions.get(), STDOUT_FILENO);
    } else {
        actions.redirect(STDOUT_FILENO,
                         surroundings.outputPath.empty() ? outputPath : surroundings.outputPath);
    }
    actions.redirect(STDERR_FILENO, errorsPath);
    if (!surroundings.directory.empty()) {
        posix_spawn_file_actions_addchdir_np(actions.get(), surroundings.directory.c_str());
    }
    arguments.insert(arguments.begin(), program);
    std::vector<std::string> environment = environmentOf(surroundings);
    pid_t process = 0;
    if (posix_spawnp(&process, program.c_str(), actions.get(), nullptr,
                     pointersTo(arguments).data(), pointersTo(environment).data()) != 0) {
        throw std::runtime_error(program + " cannot be run");
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    return {WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status),
            contentsOfFile(outputPath), contentsOfFile(errorsPath)};
}

ToolRun runTool(std::vector<std::string> arguments, const ToolSurroundings& surroundings) {
    return runProgram(TKPPDUPDATING_TOOL, std::move(arguments), surroundings);
}

std::size_t lineCount(const std::string& text) {
    const auto lineFeeds = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    return lineFeeds + (text.empty() || text.ends_with('\n') ? 0 : 1);
}

std::string contentsOfFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string samplePath(const std::string& relativePath) {
    return std::string(TKPPDUPDATING_SOURCE_DIR) + "/samples/" + relativePath;
}

}  // namespace TkPPDUpdating::Testing
