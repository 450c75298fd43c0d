// examples/c/values_filter.c as a filter of a scheduler.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "tests/real/ChildProcess.h"
#include "tests/real/PrivateScheduler.h"
#include "tests/support/FileContents.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const std::string kJob = "%!PS-Adobe-3.0\n%%Pages: 1\nshowpage\n";

/// A scheduler whose queue "office" prints PostScript through the filter into a file.
class CFilter : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PrivateScheduler::missingPrograms(), "") << "scripts/setup test installs them";
        ASSERT_NE(pathOfProgram("lp"), "") << "lp is not installed; scripts/setup test installs it";
        scheduler_ = std::make_unique<PrivateScheduler>();
        // Filters run as the scheduler's user, who need not get at the folder of the build.
        constexpr auto kForEverybody = fs::perms::owner_all | fs::perms::group_read |
                                       fs::perms::group_exec | fs::perms::others_read |
                                       fs::perms::others_exec;
        fs::permissions(folder(), kForEverybody);
        const fs::path filter = folder() / "values_filter";
        fs::copy_file(TKPPDUPDATING_VALUES_FILTER, filter);
        fs::permissions(filter, kForEverybody);
        std::string text = contentsOfFile(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd");
        std::string lines;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
            const std::string line = text.substr(at, end - at);
            lines += line.starts_with("*cupsFilter") ? "" : line;
            at = end;
        }
        lines += "*cupsFilter: \"application/postscript 0 " + filter.string() + "\"\n";
        const std::string PPD = scheduler_->directory().write("office.ppd", lines);
        // Schedulers of today make no file for a device; they write into one that is there.
        scheduler_->directory().write("printed", "");
        fs::permissions(printed(), kForEverybody | fs::perms::others_write);
        scheduler_->addQueue("office", "file:" + printed(), PPD);
    }

    fs::path folder() const { return scheduler_->directory().path(); }
    std::string printed() const { return (folder() / "printed").string(); }

    /// Prints the job and gives what came out, once it has its last line.
    std::string print() const {
        const std::string job = scheduler_->directory().write("job.ps", kJob);
        const auto result = scheduler_->runClient({"lp", "-d", "office", job});
        EXPECT_EQ(result.exitStatus, 0) << result.standardError;
        std::string out;
        for (int attempt = 0; attempt < 1500 && !out.ends_with("showpage\n"); ++attempt) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            out = contentsOfFile(printed());
        }
        return out;
    }

    std::string log() const { return contentsOfFile((folder() / "error_log").string()); }

    std::unique_ptr<PrivateScheduler> scheduler_;
};

TEST_F(CFilter, PutsTheValuesOfTheMomentIntoTheJob) {
    scheduler_->directory().write("cache/office.json", R"({"MaxSupportedResolution": 2400})");
    fs::permissions(folder() / "cache" / "office.json",
                    fs::perms::others_read | fs::perms::group_read, fs::perm_options::add);
    const std::string out = print();
    EXPECT_THAT(out, testing::StartsWith("%!PS-Adobe-3.0\n%")) << log();
    EXPECT_THAT(out, HasSubstr("\n%ZrMaxSupportedResolution: 2400\n")) << log();
    EXPECT_TRUE(out.ends_with("\n%%Pages: 1\nshowpage\n")) << out;
}

TEST_F(CFilter, PrintsTheJobWhenThereIsNoStatusAndSaysWhy) {
    // The queue's device URI names a file that is no recording.
    EXPECT_EQ(print(), kJob) << log();
    EXPECT_THAT(log(), HasSubstr("device URI: "));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
