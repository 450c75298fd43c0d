#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "tests/support/FileContents.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/AsUser.h"
#include "tests/tools/ToolRun.h"
#include "tools/AtomicReplacement.h"
#include "tools/Failure.h"

namespace TkPPDUpdating::Testing {
namespace {

std::filesystem::path writeOver(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    return path;
}

timespec timeOfChange(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status.st_ctim;
}

/// Waits until a change of a file in the folder gets another time than the file's last one: the
/// clock of a file system may tick only every few milliseconds.
void waitForTheClockOf(const std::string& path, const TemporaryDirectory& directory) {
    const timespec last = timeOfChange(path);
    timespec now = last;
    while (now.tv_sec == last.tv_sec && now.tv_nsec == last.tv_nsec) {
        const std::string scratch = directory.write("scratch", "");
        now = timeOfChange(scratch);
        std::filesystem::remove(scratch);
    }
}

/// What somebody does between the reading and the replacing of "folder/a.ppd", and what is there
/// afterwards.
struct Meddling {
    std::string testName;
    std::function<void(const TemporaryDirectory& directory)> meddle;
    std::string contentAfterwards;
};

std::ostream& operator<<(std::ostream& stream, const Meddling& meddling) {
    return stream << meddling.testName;
}

class FileInPlaceMeddlingTest : public ::testing::TestWithParam<Meddling> {};

TEST_P(FileInPlaceMeddlingTest, IsSeenAndItsResultIsKept) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("folder/a.ppd", "old");
    const std::string secret = directory.write("secret", "secret");
    const FileInPlace inPlace(file);
    ASSERT_EQ(*inPlace.text(), "old");
    waitForTheClockOf(file, directory);
    GetParam().meddle(directory);
    const auto after = directory.path() / "folder";
    const auto count = std::distance(std::filesystem::directory_iterator(after), {});
    EXPECT_EQ(asMyself([&] {
                  inPlace.replace("new");
                  return "replaced";
              }),
              "was changed meanwhile");
    EXPECT_EQ(contentsOfFile(file), GetParam().contentAfterwards);
    EXPECT_EQ(contentsOfFile(secret), "secret");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(after), {}), count);
}

INSTANTIATE_TEST_SUITE_P(
    Meddlings, FileInPlaceMeddlingTest,
    ::testing::Values(Meddling{"AnotherFileInItsPlace",
                               [](const TemporaryDirectory& directory) {
                                   std::filesystem::rename(directory.write("b.ppd", "old"),
                                                           directory.path() / "folder/a.ppd");
                               },
                               "old"},
                      Meddling{"ALinkToAnotherFileInItsPlace",
                               [](const TemporaryDirectory& directory) {
                                   const auto file = directory.path() / "folder/a.ppd";
                                   std::filesystem::remove(file);
                                   std::filesystem::create_symlink(directory.path() / "secret",
                                                                   file);
                               },
                               "secret"},
                      Meddling{"ALinkToTheFileItself",
                               [](const TemporaryDirectory& directory) {
                                   const auto file = directory.path() / "folder/a.ppd";
                                   std::filesystem::rename(file, directory.path() / "folder/b.ppd");
                                   std::filesystem::create_symlink("b.ppd", file);
                               },
                               "old"},
                      Meddling{"ItsRemoval",
                               [](const TemporaryDirectory& directory) {
                                   std::filesystem::remove(directory.path() / "folder/a.ppd");
                               },
                               ""},
                      Meddling{"AnEdit",
                               [](const TemporaryDirectory& directory) {
                                   writeOver(directory.path() / "folder/a.ppd", "edited");
                               },
                               "edited"},
                      Meddling{"AnEditOfTheSameSize",
                               [](const TemporaryDirectory& directory) {
                                   writeOver(directory.path() / "folder/a.ppd", "odd");
                               },
                               "odd"},
                      Meddling{"AnEditWithTheFormerTimeOfModification",
                               [](const TemporaryDirectory& directory) {
                                   const auto file = directory.path() / "folder/a.ppd";
                                   const auto time = std::filesystem::last_write_time(file);
                                   std::filesystem::last_write_time(writeOver(file, "odd"), time);
                               },
                               "odd"},
                      Meddling{"AnotherMode",
                               [](const TemporaryDirectory& directory) {
                                   ::chmod((directory.path() / "folder/a.ppd").c_str(), 0604);
                               },
                               "old"}),
    [](const auto& test) { return test.param.testName; });

class FileInPlaceTest : public ::testing::Test {
  protected:
    TemporaryDirectory directory_;
    const std::string file_ = directory_.write("folder/a.ppd", "old");

    std::string path(const std::string& relative) const {
        return (directory_.path() / relative).string();
    }
    static std::string reasonForFailure(const std::string& path) {
        return asMyself([&] { return *FileInPlace(path).text(); });
    }
};

TEST_F(FileInPlaceTest, ReplacesTheFileThatWasRead) {
    const FileInPlace inPlace(file_);
    EXPECT_EQ(*inPlace.text(), "old");
    inPlace.replace("new");
    EXPECT_EQ(contentsOfFile(file_), "new");
}

TEST_F(FileInPlaceTest, ReplacesTheFileBehindALinkAndKeepsTheLink) {
    std::filesystem::create_symlink("folder/a.ppd", path("link"));
    FileInPlace(path("link")).replace("new");
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_EQ(contentsOfFile(file_), "new");
}

TEST_F(FileInPlaceTest, ReplacesItInTheFolderInWhichItWasRead) {
    directory_.write("other/a.ppd", "other");
    const FileInPlace inPlace(file_);
    std::filesystem::rename(path("folder"), path("moved"));
    std::filesystem::create_directory_symlink("other", path("folder"));
    inPlace.replace("new");
    EXPECT_EQ(contentsOfFile(path("moved/a.ppd")), "new");
    EXPECT_EQ(contentsOfFile(path("other/a.ppd")), "other");
}

TEST_F(FileInPlaceTest, IsNotReplacedTwice) {
    const FileInPlace inPlace(file_);
    inPlace.replace("new");
    EXPECT_EQ(asMyself([&] {
                  inPlace.replace("newer");
                  return "replaced";
              }),
              "was changed meanwhile");
    EXPECT_EQ(contentsOfFile(file_), "new");
}

TEST_F(FileInPlaceTest, RefusesWhatIsNoFileOfItsOwn) {
    const std::string pipe = path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(reasonForFailure(pipe), "is not a regular file");
    EXPECT_EQ(reasonForFailure("/dev/null"), "is not a regular file");
    EXPECT_EQ(reasonForFailure(path("folder")), "is a directory; name a PPD file in it");
    EXPECT_EQ(reasonForFailure("/dev/stdin"), "cannot be replaced: it is an open file");
    EXPECT_EQ(reasonForFailure(path("none.ppd")), "No such file or directory");
    EXPECT_EQ(reasonForFailure(path("none/a.ppd")), "No such file or directory");
    EXPECT_TRUE(reasonForFailure(directory_.write("latin1.ppd", "\xE9"))
                    .starts_with("is not valid UTF-8 at byte 0; "));
}

TEST_F(FileInPlaceTest, NamesTheFileByThePathThatWasGiven) {
    try {
        const FileInPlace inPlace(path("none.ppd"));
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.place(), path("none.ppd"));
        EXPECT_EQ(failure.status(), ExitStatus::noResult);
    }
}

TEST_F(FileInPlaceTest, AUserReplacesHisFileInRootsFolderOnlyWhenHeMayWriteThere) {
    std::filesystem::permissions(directory_.path(), std::filesystem::perms(0755));
    if (!isRoot()) {
        std::filesystem::permissions(path("folder"), std::filesystem::perms(0555));
    } else {
        giveTo(kNobody, file_);
    }
    const auto replace = [&] {
        FileInPlace(file_).replace("new");
        return "replaced";
    };
    EXPECT_EQ(asUser(replace), "no new file can be made in its folder: Permission denied");
    EXPECT_EQ(contentsOfFile(file_), "old");
    std::filesystem::permissions(path("folder"), std::filesystem::perms(0777));
    EXPECT_EQ(asUser(replace), "replaced");
    EXPECT_EQ(contentsOfFile(file_), "new");
}

TEST_F(FileInPlaceTest, RootLeavesAUsersFileHis) {
    if (isRoot()) {
        giveTo(kNobody, file_);
    }
    const uid_t owner = ownerOf(file_);
    FileInPlace(file_).replace("new");
    EXPECT_EQ(contentsOfFile(file_), "new");
    EXPECT_EQ(ownerOf(file_), owner);
}

TEST_F(FileInPlaceTest, AUserDoesNotTakeOverAFileOfRoot) {
    std::filesystem::permissions(directory_.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(path("folder"), std::filesystem::perms(0777));
    const std::string answer = asUser([&] {
        FileInPlace(file_).replace("new");
        return "replaced";
    });
    // Without root there is no other user's file to try it on.
    EXPECT_EQ(answer, isRoot() ? "its owner cannot be kept: Operation not permitted" : "replaced");
    EXPECT_EQ(contentsOfFile(file_), isRoot() ? "old" : "new");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path("folder")), {}), 1);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
