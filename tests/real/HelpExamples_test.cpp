// The examples that the help of each command ends with, run as they stand there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/real/PrivateScheduler.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

const std::string kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";
const std::string kOfficeStatus = TKPPDUPDATING_SOURCE_DIR "/samples/status/zr-office-all.json";

std::vector<std::string> examplesOf(const std::string& command) {
    const std::string help = runProgram({TKPPDUPDATING_TOOL, command, "--help"}).standardOutput;
    std::istringstream lines(help.substr(std::min(help.find("\nExample"), help.size())));
    std::vector<std::string> examples;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  tkppdupdate ")) {
            examples.push_back(line.substr(2));
        }
    }
    return examples;
}

std::string replacedAll(std::string text, const std::string& old, const std::string& with) {
    for (std::size_t at = 0; (at = text.find(old, at)) != std::string::npos; at += with.size()) {
        text.replace(at, old.size(), with);
    }
    return text;
}

/// A folder with what the examples name, and a scheduler with their queues; for the printer of the
/// examples, which nobody has, stands a recording of one.
class HelpExamples : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PrivateScheduler::missingPrograms(), "");
        scheduler_ = std::make_unique<PrivateScheduler>();
        for (const char* queue : {"office", "lab"}) {
            scheduler_->addQueue(queue, "file://" + kOfficeStatus, kOfficePPD);
        }
        for (const char* name : {"office.ppd", "new-driver.ppd"}) {
            fs::copy_file(kOfficePPD, folder_.path() / name);
        }
        for (const char* name : {"office.json", "printer.json"}) {
            fs::copy_file(kOfficeStatus, folder_.path() / name);
        }
        // What two servers have told.
        ASSERT_EQ(run("tkppdupdate sync --all --dry-run --json | tee print1.json >print2.json")
                      .exitStatus,
                  0);
    }

    ProgramResult run(std::string example) const {
        for (const char* printer : {"ipp://192.168.1.5/ipp/print", "snmp://192.168.1.5"}) {
            example = replacedAll(example, printer, "file:printer.json");
        }
        example = replacedAll(example, "/var/backups/ppd", "kept");
        ProgramSurroundings surroundings;
        surroundings.workingDirectory = folder_.path().string();
        surroundings.environment = {
            {"CUPS_SERVER", scheduler_->server()},
            {"HOME", folder_.path().string()},
            {"LC_ALL", "C"},
            {"PATH", fs::path(TKPPDUPDATING_TOOL).parent_path().string() + ":/usr/bin:/bin"}};
        return runProgram({"sh", "-c", example}, surroundings);
    }

    TemporaryDirectory folder_;
    std::unique_ptr<PrivateScheduler> scheduler_;
};

TEST_F(HelpExamples, AllEndWithoutAnError) {
    // In this order: what sync keeps, restore puts back.
    for (const char* command :
         {"update", "values", "updaters", "status", "sync", "restore", "report"}) {
        const auto examples = examplesOf(command);
        EXPECT_FALSE(examples.empty()) << command;
        for (const std::string& example : examples) {
            const ProgramResult result = run(example);
            EXPECT_EQ(result.exitStatus, 0) << example << "\n" << result.standardError;
            EXPECT_EQ(result.standardError, "") << example;
        }
    }
    EXPECT_TRUE(fs::exists(folder_.path() / "new.ppd"));
    EXPECT_TRUE(fs::exists(folder_.path() / "kept/office.ppd"));
    EXPECT_TRUE(fs::exists(folder_.path() / "queues.html"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
