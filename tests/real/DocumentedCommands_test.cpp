// Every command that the pages and the manual page show is run: the tool against a
// scheduler of its own, and in the place of programs that no test may start what looks at their
// arguments.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/real/PrivateScheduler.h"
#include "tests/support/CodeBlocks.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

const fs::path kSources = TKPPDUPDATING_SOURCE_DIR;

struct Command {
    std::string page;
    std::string text;
};

/// All pages, from the root of the sources.
std::vector<std::string> pages() {
    std::vector<std::string> pages;
    for (const char* folder : {".", "docs", "samples", "examples/ansible"}) {
        for (const auto& entry : fs::directory_iterator(kSources / folder)) {
            if (entry.path().extension() == ".md") {
                pages.push_back((fs::path(folder) / entry.path().filename()).lexically_normal());
            }
        }
    }
    return pages;
}

void addMatches(const std::string& page, const std::string& text, const char* expression,
                std::vector<Command>& commands) {
    const std::regex regex(expression, std::regex::multiline);
    for (std::sregex_iterator each(text.begin(), text.end(), regex), end; each != end; ++each) {
        commands.push_back({page, each->str(1)});
    }
}

/// The page without its fenced blocks.
std::string proseOf(const std::string& page) {
    std::string prose;
    std::istringstream lines(page);
    bool isInBlock = false;
    for (std::string line; std::getline(lines, line);) {
        const bool isFence = line.starts_with("```");
        isInBlock = isInBlock != isFence;
        if (!isInBlock && !isFence) {
            prose += line + "\n";
        }
    }
    return prose;
}

std::vector<Command> commandsOfPages() {
    std::vector<Command> commands;
    for (const std::string& page : pages()) {
        const std::string text = textOfSource(page);
        if (page == "docs/writing-an-updater.md") {
            continue;  // Its test builds the module that its commands load.
        }
        for (const std::string& block : codeBlocksOf(text, "sh")) {
            commands.push_back({page, block});
        }
        const std::string prose = proseOf(text);
        addMatches(page, prose, "^    ([a-z][a-z_/-]* .*)$", commands);
        addMatches(page, prose, "`((?:cmake|ctest|cpack|scripts/[a-z-]+)(?: [^`]*)?)`", commands);
    }
    return commands;
}

std::vector<Command> commandsOfManualPage() {
    std::vector<Command> commands;
    const std::string page = "docs/tkppdupdate.1";
    const std::string text = textOfSource(page);
    addMatches(page, text.substr(text.find(".Sh EXAMPLES")), "^\\.Dl (.*)$", commands);
    return commands;
}

void writeProgram(const fs::path& path, const std::string& script) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "#!/bin/sh\nset -eu\nsources='" << kSources.string() << "'\n" << script;
    fs::permissions(path, fs::perms::owner_all);
}

class DocumentedCommands : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PrivateScheduler::missingPrograms(), "");
        scheduler_ = std::make_unique<PrivateScheduler>();
        fs::copy_file(kSources / "samples/status/zr-office-all.json",
                      shared_.path() / "printer.json");
        for (const char* queue : {"office", "lab", "desk"}) {
            scheduler_->addQueue(queue, printer(), kSources / "samples/ppd/zr-office.ppd");
        }
        writeStandIns();
    }

    std::string printer() const { return "file://" + (shared_.path() / "printer.json").string(); }

    /// What looks at the arguments of a program that is not for a test to run.
    void writeStandIns() const {
        const fs::path folder = shared_.path() / "bin";
        writeProgram(folder / "ansible-playbook", "test -e \"$sources/examples/ansible/$1\"\n");
        const std::string unit =
            "    test -e \"$sources/administration/$name\" ||\n"
            "        test -e \"$sources/administration/$name.service.in\"\n";
        writeProgram(folder / "systemctl", "for name; do :; done\n" + unit);
        writeProgram(folder / "journalctl",
                     "if [ \"$1\" = -u ]; then\n    name=$2\n" + unit + "fi\n");
        writeProgram(folder / "cc", "test -e \"$sources/examples/c/$2\"\n");
        writeProgram(
            folder / "pkg-config",
            "for name; do :; done\ngrep -rqw \"$name\" \"$sources/c_interface/CMakeLists.txt\"\n");
        for (const char* name : {"cmake", "ctest"}) {
            writeProgram(
                folder / name,
                "while [ $# -gt 0 ]; do\n"
                "    if [ \"$1\" = --preset ]; then\n"
                "        grep -q \"\\\"name\\\": \\\"$2\\\"\" \"$sources/CMakePresets.json\"\n"
                "    fi\n    shift\ndone\n");
        }
        writeProgram(folder / "cpack", "test \"$1\" = --config\n");
    }

    /// What stands in the folder in which somebody types the commands.
    void furnish(const fs::path& folder) const {
        for (const char* name : {"office.ppd", "driver.ppd", "new-driver.ppd"}) {
            fs::copy_file(kSources / "samples/ppd/zr-office.ppd", folder / name);
        }
        for (const char* name : {"office.json", "printer.json", "desk.json"}) {
            fs::copy_file(shared_.path() / "printer.json", folder / name);
        }
        fs::create_directories(folder / "backups");
        fs::copy_file(folder / "office.ppd", folder / "backups/office.ppd");
        fs::create_directories(folder / "reports");
        for (const char* name : {"print1.json", "print2.json", "reports/print1.json"}) {
            std::ofstream(folder / name) << "{\"queue\": \"office\", \"result\": \"unchanged\"}\n";
        }
        fs::create_directory_symlink(kSources / "samples", folder / "samples");
        fs::create_directory(folder / "scripts");
        for (const auto& script : fs::directory_iterator(kSources / "scripts")) {
            if ((script.status().permissions() & fs::perms::owner_exec) != fs::perms::none) {
                fs::create_symlink("/bin/true", folder / "scripts" / script.path().filename());
            }
        }
        writeProgram(folder / "build/fuzz/fuzz/fuzz_update",
                     "test -e \"$sources/${1#-dict=}\"\ntest -e \"$sources/$3\"\n");
    }

    /// With printers and folders of the test in the place of those that are shown.
    std::string here(std::string command) const {
        static const std::regex kPrinter("(?:ipp|snmp)://[0-9.]+(?:/[a-z0-9/]+)?");
        command = std::regex_replace(command, kPrinter, printer());
        static const std::regex kFolder("/var/backups/ppd");
        return std::regex_replace(command, kFolder, "backups");
    }

    void expectToRun(const std::vector<Command>& commands, std::size_t atLeast) const {
        EXPECT_GE(commands.size(), atLeast);
        for (const Command& command : commands) {
            const TemporaryDirectory folder;
            furnish(folder.path());
            ProgramSurroundings surroundings;
            surroundings.workingDirectory = folder.path().string();
            surroundings.environment = {
                {"CUPS_SERVER", scheduler_->server()},
                {"LC_ALL", "C"},
                {"HOME", folder.path().string()},
                {"PATH", (shared_.path() / "bin").string() + ":" +
                             fs::path(TKPPDUPDATING_TOOL).parent_path().string() +
                             ":/usr/sbin:/usr/bin:/sbin:/bin"}};
            const ProgramResult result = runProgram(
                {"bash", "-e", "-o", "pipefail", "-c", here(command.text)}, surroundings);
            EXPECT_EQ(result.exitStatus, 0) << command.page << ": " << command.text << "\n"
                                            << result.standardError;
        }
    }

    TemporaryDirectory shared_;
    std::unique_ptr<PrivateScheduler> scheduler_;
};

TEST_F(DocumentedCommands, OfThePagesDoWhatTheyAreShownFor) {
    expectToRun(commandsOfPages(), 40);
}

TEST_F(DocumentedCommands, OfTheManualPageDoWhatTheyAreShownFor) {
    expectToRun(commandsOfManualPage(), 14);
}

TEST_F(DocumentedCommands, AFileOfPlacesIsAsThePageShowsIt) {
    const auto blocks = codeBlocksOf(textOfSource("docs/sync.md"), "");
    const auto places = std::ranges::find_if(blocks, [](const std::string& block) {
        return block.find("# QUEUE=URI") != std::string::npos;
    });
    ASSERT_NE(places, blocks.end());
    // A recording has to be there.
    const std::regex recording("/var/lib/ppd/workshop\\.json");
    const std::string file = shared_.write(
        "places",
        std::regex_replace(*places, recording, (shared_.path() / "printer.json").string()));
    const ProgramResult result =
        runProgram({TKPPDUPDATING_TOOL, "sync", "desk", "--dry-run", "--server",
                    scheduler_->server(), "--status-uris", file});
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
}

/// A block in another language would be run by nobody.
TEST(DocumentedBlocks, AreInLanguagesThatTestsLookAt) {
    const std::regex fence("^```([a-z]*)$", std::regex::multiline);
    const std::set<std::string> known = {"", "sh", "cpp", "c", "json", "console", "text", "ini"};
    for (const std::string& page : pages()) {
        const std::string text = textOfSource(page);
        for (std::sregex_iterator each(text.begin(), text.end(), fence), end; each != end; ++each) {
            EXPECT_TRUE(known.contains(each->str(1))) << page << ": " << each->str(1);
        }
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
