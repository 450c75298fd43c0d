#include "sync/TemporaryFiles.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

bool beginsWithAPoint(std::string_view name) {
    return name.starts_with('.') && name != "." && name != "..";
}

class TemporaryFilesTest : public testing::Test {
  protected:
    void removeAbandoned() const {
        removeAbandonedFiles(folder.get(), beginsWithAPoint, ::geteuid());
    }

    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
            found.insert(entry.path().filename());
        }
        return found;
    }

    std::string path(const std::string& name) const { return directory.path() / name; }

    TemporaryDirectory directory;
    FileDescriptor folder{::open(directory.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
};

TEST_F(TemporaryFilesTest, AreRemovedWhenNobodyHasThem) {
    (void)newTemporaryFile(folder.get(), ".one", 0600);
    (void)newTemporaryFile(folder.get(), ".unreadable", 0200);
    (void)newTemporaryFile(folder.get(), ".read-only", 0400);
    removeAbandoned();
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(TemporaryFilesTest, StayWhileTheirWriterLives) {
    const FileDescriptor file = newTemporaryFile(folder.get(), ".one", 0600);
    ASSERT_TRUE(file.isOpen());
    removeAbandoned();
    EXPECT_THAT(names(), ElementsAre(".one"));
}

TEST_F(TemporaryFilesTest, AreMadeForWritingWithTheModeThatIsAskedFor) {
    const FileDescriptor file = newTemporaryFile(folder.get(), ".one", 0600);
    EXPECT_TRUE(writeAll(file.get(), "text"));
    struct stat status {};
    ASSERT_EQ(::fstat(file.get(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(TemporaryFilesTest, TakeNoNameThatThereIs) {
    directory.write(".one", "other's");
    EXPECT_FALSE(newTemporaryFile(folder.get(), ".one", 0600).isOpen());
    EXPECT_EQ(errno, EEXIST);
    std::filesystem::create_symlink("nowhere", path(".link"));
    EXPECT_FALSE(newTemporaryFile(folder.get(), ".link", 0600).isOpen());
    EXPECT_EQ(errno, EEXIST);
    EXPECT_FALSE(std::filesystem::exists(path("nowhere")));
}

TEST_F(TemporaryFilesTest, LeaveEverythingElseAlone) {
    directory.write("a.ppd", "other's");
    directory.write("other/.one", "other's");
    std::filesystem::create_symlink("a.ppd", path(".link"));
    std::filesystem::create_directory(path(".folder"));
    ASSERT_EQ(::mkfifo(path(".pipe").c_str(), 0600), 0);
    directory.write(".two-names", "other's");
    std::filesystem::create_hard_link(path(".two-names"), path("second"));
    const auto before = names();
    removeAbandoned();
    EXPECT_EQ(names(), before);
    EXPECT_TRUE(std::filesystem::exists(path("other/.one")));
}

TEST_F(TemporaryFilesTest, OfAnotherUserStayUnlessHeIsTheOneThatIsMeant) {
    if (::geteuid() != 0) {
        // Nobody else can give a file away; that one's own go, the other tests see.
        return;
    }
    constexpr uid_t kStranger = 12345;
    ASSERT_EQ(::chown(directory.write(".one", "").c_str(), kStranger, kStranger), 0);
    removeAbandoned();
    EXPECT_THAT(names(), ElementsAre(".one"));
    removeAbandonedFiles(folder.get(), beginsWithAPoint, kStranger);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(TemporaryFilesTest, InAFolderThatCannotBeReadStay) {
    const FileDescriptor none;
    removeAbandonedFiles(none.get(), beginsWithAPoint, ::geteuid());
    EXPECT_FALSE(newTemporaryFile(none.get(), ".one", 0600).isOpen());
    EXPECT_EQ(errno, EBADF);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
