#include "sync/QueueBackups.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <set>
#include <string>

#include "tests/support/FileContents.h"
#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QueueBackupsTest : public testing::Test {
  protected:
    QueueBackupsTest() : folder((directory.path() / "kept").string()) { reopen(false); }

    void reopen(bool keepsAll) {
        std::string reason;
        backups = QueueBackups::open(folder, keepsAll, reason);
        ASSERT_TRUE(backups) << reason;
    }

    void keepOne(const std::string& text) const {
        std::string reason;
        QueueBackups::Entry entry(*backups, "office");
        ASSERT_TRUE(entry.write(text, reason) && entry.place(reason)) << reason;
        entry.keep();
    }

    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            found.insert(entry.path().filename());
        }
        return found;
    }

    std::string textOf(const std::string& name) const {
        return contentsOfFile(folder + "/" + name);
    }

    static mode_t modeOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TemporaryDirectory directory;
    std::string folder;
    std::unique_ptr<QueueBackups> backups;
};

TEST_F(QueueBackupsTest, KeepsTheLastOneOfAQueue) {
    keepOne("first");
    keepOne("second");
    EXPECT_THAT(names(), ElementsAre("office.ppd"));
    std::string reason;
    EXPECT_EQ(*backups->lastOf("office", reason), "second");
}

TEST_F(QueueBackupsTest, IsForItsOwnerAlone) {
    keepOne("first");
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(modeOf(folder + "/office.ppd"), 0600U);
}

TEST_F(QueueBackupsTest, KeepsAllOfAQueueWhereThatIsWanted) {
    reopen(true);
    keepOne("first");
    keepOne("second");
    keepOne("third");
    EXPECT_EQ(textOf("office.ppd"), "third");
    std::set<std::string> texts;
    for (const std::string& name : names()) {
        if (name != "office.ppd") {
            EXPECT_THAT(name, testing::MatchesRegex("office\\.[0-9]{8}T[0-9]{6}Z(-[0-9]+)?\\.ppd"));
            texts.insert(textOf(name));
        }
    }
    EXPECT_THAT(texts, ElementsAre("first", "second", "third"));
}

TEST_F(QueueBackupsTest, WhatWasNotReplacedLeavesEverythingAsItWas) {
    reopen(true);
    std::string reason;
    {
        QueueBackups::Entry entry(*backups, "office");
        ASSERT_TRUE(entry.write("never", reason));
    }
    EXPECT_THAT(names(), IsEmpty());
    {
        QueueBackups::Entry entry(*backups, "office");
        ASSERT_TRUE(entry.write("never", reason) && entry.place(reason));
    }
    EXPECT_THAT(names(), IsEmpty());
    reopen(false);
    keepOne("first");
    {
        QueueBackups::Entry entry(*backups, "office");
        ASSERT_TRUE(entry.write("never", reason) && entry.place(reason));
        EXPECT_EQ(textOf("office.ppd"), "never");
    }
    EXPECT_THAT(names(), ElementsAre("office.ppd"));
    EXPECT_EQ(textOf("office.ppd"), "first");
}

TEST_F(QueueBackupsTest, ThereIsAlwaysOneUnderItsName) {
    keepOne("first");
    std::string reason;
    QueueBackups::Entry entry(*backups, "office");
    ASSERT_TRUE(entry.write("second", reason));
    EXPECT_EQ(textOf("office.ppd"), "first");
    ASSERT_TRUE(entry.place(reason)) << reason;
    EXPECT_EQ(textOf("office.ppd"), "second");
    EXPECT_EQ(textOf(".office.ppd.former"), "first");
}

TEST_F(QueueBackupsTest, ARunThatWasKilledBeforeItInstalledHasKeptNothing) {
    directory.write("kept/.office.ppd.former", "first");
    directory.write("kept/office.ppd", "present");
    backups->settleInterruptedRun("office", "present");
    EXPECT_THAT(names(), ElementsAre("office.ppd"));
    EXPECT_EQ(textOf("office.ppd"), "first");
}

TEST_F(QueueBackupsTest, ARunThatWasKilledAfterItInstalledHasKeptWhatItReplaced) {
    directory.write("kept/.office.ppd.former", "first");
    directory.write("kept/office.ppd", "replaced");
    backups->settleInterruptedRun("office", "present");
    EXPECT_THAT(names(), ElementsAre("office.ppd"));
    EXPECT_EQ(textOf("office.ppd"), "replaced");
}

TEST_F(QueueBackupsTest, WhatARunThatWasKilledHasSetAsideComesBack) {
    directory.write("kept/.office.ppd.former", "first");
    backups->settleInterruptedRun("office", "present");
    EXPECT_THAT(names(), ElementsAre("office.ppd"));
    EXPECT_EQ(textOf("office.ppd"), "first");
}

TEST_F(QueueBackupsTest, WhatARunThatWasKilledHasNotFinishedGoesWithTheNextOne) {
    keepOne("first");
    directory.write("kept/.office.ppd.123-1", "half of");
    directory.write("kept/.other.ppd.4-56", "");
    // Not of that form.
    directory.write("kept/.office.ppd.123-1.ppd", "");
    directory.write("kept/..ppd.1-1", "");
    directory.write("kept/office.ppd.123-1", "");
    std::string reason;
    QueueBackups::Entry entry(*backups, "office");
    ASSERT_TRUE(entry.write("being written", reason));
    ASSERT_TRUE(QueueBackups::open(folder, false, reason)) << reason;
    EXPECT_THAT(names(), testing::UnorderedElementsAre(
                             "..ppd.1-1", testing::MatchesRegex("\\.office\\.ppd\\.[0-9]+-[0-9]+"),
                             ".office.ppd.123-1.ppd", "office.ppd", "office.ppd.123-1"));
}

TEST_F(QueueBackupsTest, WithoutRoomThereIsNone) {
    keepOne("first");
    struct rlimit before {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = before;
    small.rlim_cur = 4;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    std::string reason;
    bool isWritten = true;
    {
        QueueBackups::Entry entry(*backups, "office");
        isWritten = entry.write("longer than four bytes", reason);
    }
    ::setrlimit(RLIMIT_FSIZE, &before);
    (void)std::signal(SIGXFSZ, oldHandler);
    EXPECT_FALSE(isWritten);
    EXPECT_EQ(reason, "File too large");
    EXPECT_THAT(names(), ElementsAre("office.ppd"));
    EXPECT_EQ(textOf("office.ppd"), "first");
}

TEST_F(QueueBackupsTest, AFolderThatOthersCanChangeIsRefused) {
    std::filesystem::permissions(folder, std::filesystem::perms::all);
    std::string reason;
    EXPECT_FALSE(QueueBackups::open(folder, false, reason));
    EXPECT_THAT(reason, HasSubstr("everybody may write there"));
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    if (::geteuid() == 0) {
        constexpr uid_t kStranger = 12345;
        ASSERT_EQ(::chown(folder.c_str(), kStranger, static_cast<gid_t>(-1)), 0);
        EXPECT_FALSE(QueueBackups::open(folder, false, reason));
        EXPECT_THAT(reason, HasSubstr("belongs to another user"));
    }
}

TEST_F(QueueBackupsTest, AFolderThatIsNoneIsRefused) {
    std::string reason;
    EXPECT_FALSE(QueueBackups::open(directory.write("file", ""), false, reason));
    EXPECT_EQ(reason, "Not a directory");
    EXPECT_FALSE(QueueBackups::open((directory.path() / "a/b").string(), false, reason));
    EXPECT_EQ(reason, "cannot be made: No such file or directory");
    EXPECT_FALSE(QueueBackups::openExisting((directory.path() / "a").string(), reason));
    EXPECT_EQ(reason, "No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(directory.path() / "a"));
}

TEST_F(QueueBackupsTest, SaysWhyThereIsNothingToPutBack) {
    std::string reason;
    EXPECT_FALSE(backups->lastOf("office", reason));
    EXPECT_EQ(reason, "No such file or directory");
    std::filesystem::create_symlink(directory.write("other", "text"), folder + "/office.ppd");
    EXPECT_FALSE(backups->lastOf("office", reason));
    EXPECT_EQ(reason, "Too many levels of symbolic links");
    keepOne("caf\xE9");
    EXPECT_FALSE(backups->lastOf("office", reason));
    EXPECT_EQ(reason, "is not valid UTF-8 at byte 3");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
