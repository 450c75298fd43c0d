#include "tools/FilePlace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/AsUser.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr const char* kStrangersLink =
    "leads through a symbolic link that belongs to another user than what it leads to";

/// What the place of a path holds, read in the folder that it holds open; or the error.
std::string contentAt(const std::string& path) {
    try {
        const FilePlace place = placeOfFile(path);
        const FileDescriptor file(
            ::openat(place.folder.get(), place.name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
        if (!file.isOpen()) {
            return "nothing called " + place.name;
        }
        std::string content(100, '\0');
        const ssize_t length = ::read(file.get(), content.data(), content.size());
        content.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
        return length < 0 ? std::generic_category().message(errno) : content;
    } catch (const std::system_error& error) {
        return error.code().message();
    }
}

class FilePlaceTest : public ::testing::Test {
  protected:
    std::string path(const std::string& relative) const {
        return (directory_.path() / relative).string();
    }
    void link(const std::string& target, const std::string& name) const {
        std::filesystem::create_symlink(target, directory_.path() / name);
    }

    TemporaryDirectory directory_;
    const std::string file_ = directory_.write("real/a.ppd", "a");
};

TEST_F(FilePlaceTest, FindsWhatTheKernelFinds) {
    directory_.write("b.ppd", "b");
    std::filesystem::create_directories(directory_.path() / "links/deep");
    link("real/a.ppd", "one");
    link("one", "two");
    link(path("two"), "three");
    link("real", "folder");
    link("../../folder/", "links/deep/up");
    link("real/none.ppd", "dangling");
    for (const auto& [relative, content] : std::vector<std::pair<std::string, std::string>>{
             {"real/a.ppd", "a"},
             {"real//a.ppd", "a"},
             {"./real/./a.ppd", "a"},
             {"real/../b.ppd", "b"},
             {"one", "a"},
             {"two", "a"},
             {"three", "a"},
             {"folder/a.ppd", "a"},
             {"folder/../b.ppd", "b"},
             {"links/deep/up/a.ppd", "a"},
             {"links/deep/up/../b.ppd", "b"},
             {"none.ppd", "nothing called none.ppd"},
             {"dangling", "nothing called none.ppd"},
             {"real", "Is a directory"},
             {"real/", "Is a directory"},
             {"real/a.ppd/", "Not a directory"},
             {"none/a.ppd", "No such file or directory"},
             {"dangling/a.ppd", "No such file or directory"}}) {
        EXPECT_EQ(contentAt(path(relative)), content) << relative;
    }
    EXPECT_EQ(contentAt(""), "No such file or directory");
    EXPECT_EQ(contentAt("/"), "Is a directory");
}

TEST_F(FilePlaceTest, FindsAPathThatBeginsInTheWorkingDirectory) {
    const std::filesystem::path relative =
        std::filesystem::relative(file_, std::filesystem::current_path());
    ASSERT_TRUE(relative.is_relative());
    EXPECT_EQ(contentAt(relative.string()), "a");
    EXPECT_EQ(contentAt("/proc/self/cwd/" + relative.string()), "a");
}

TEST_F(FilePlaceTest, FollowsAsManyLinksAsTheKernel) {
    for (int number = 1; number <= 41; ++number) {
        link(number == 1 ? "real/a.ppd" : std::to_string(number - 1), std::to_string(number));
    }
    EXPECT_EQ(contentAt(path("40")), "a");
    EXPECT_EQ(contentAt(path("41")), "Too many levels of symbolic links");
    link("circle", "circle");
    EXPECT_EQ(contentAt(path("circle")), "Too many levels of symbolic links");
    EXPECT_EQ(contentAt(path("circle/a.ppd")), "Too many levels of symbolic links");
}

TEST_F(FilePlaceTest, KeepsToTheFolderThatItFound) {
    const FilePlace place = placeOfFile(file_);
    std::filesystem::rename(directory_.path() / "real", directory_.path() / "moved");
    directory_.write("real/a.ppd", "another");
    struct stat held {};
    struct stat moved {};
    ASSERT_EQ(::fstatat(place.folder.get(), place.name.c_str(), &held, 0), 0);
    ASSERT_EQ(::stat(path("moved/a.ppd").c_str(), &moved), 0);
    EXPECT_EQ(held.st_ino, moved.st_ino);
}

TEST_F(FilePlaceTest, StopsAtTheLinkToAnOpenFile) {
    link("/dev/stdout", "stdout");
    for (const std::string& name : {std::string("/dev/stdout"), path("stdout")}) {
        const FilePlace place = placeOfFile(name);
        EXPECT_TRUE(place.isOpenFile);
        EXPECT_EQ(place.name, "1");
    }
    EXPECT_FALSE(placeOfFile(file_).isOpenFile);
}

TEST_F(FilePlaceTest, FindsAFileInAFolderThatIsOpen) {
    const FileDescriptor folder(::open(path("real").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::string open = "/proc/self/fd/" + std::to_string(folder.get());
    link(open, "open");
    EXPECT_EQ(contentAt(open + "/a.ppd"), "a");
    EXPECT_EQ(contentAt(path("open/a.ppd")), "a");
}

TEST_F(FilePlaceTest, FollowsLinksOfRootOfTheUserAndOfTheTargetsOwner) {
    struct Case {
        uid_t linkOwner, targetOwner, user;
        bool isFollowed;
    };
    for (const auto& [linkOwner, targetOwner, user, isFollowed] :
         std::vector<Case>{{0, 0, 0, true},
                           {0, 7, 0, true},
                           {7, 7, 0, true},
                           {7, 0, 0, false},
                           {7, 8, 0, false},
                           {0, 0, 7, true},
                           {7, 0, 7, true},
                           {7, 8, 7, true},
                           {8, 8, 7, true},
                           {8, 7, 7, false},
                           {8, 0, 7, false}}) {
        EXPECT_EQ(mayFollowLink(linkOwner, targetOwner, user), isFollowed)
            << linkOwner << " " << targetOwner << " " << user;
    }
}

/// The link at `linkPath` belongs to `linkOwner`, and what it leads to at `target` to
/// `targetOwner`.
struct OwnersOfLink {
    std::string testName;
    uid_t linkOwner;
    uid_t targetOwner;
    bool rootFollows;
    bool nobodyFollows;
};

std::ostream& operator<<(std::ostream& stream, const OwnersOfLink& owners) {
    return stream << owners.testName;
}

class LinkOwnersTest : public FilePlaceTest, public ::testing::WithParamInterface<OwnersOfLink> {
  protected:
    void SetUp() override {
        std::filesystem::permissions(directory_.path(), std::filesystem::perms(0755));
        link("real/a.ppd", "link");
        link("real", "folder");
        link("real/none.ppd", "dangling");
        if (isRoot()) {
            giveTo(GetParam().targetOwner, path("real"));
            giveTo(GetParam().targetOwner, file_);
            for (const char* name : {"link", "folder", "dangling"}) {
                giveTo(GetParam().linkOwner, path(name));
            }
        }
    }
};

TEST_P(LinkOwnersTest, DecideWhetherALinkIsFollowed) {
    // Who is not root owns all of it.
    const bool rootFollows = !isRoot() || GetParam().rootFollows;
    const bool nobodyFollows = !isRoot() || GetParam().nobodyFollows;
    for (const char* name : {"link", "folder/a.ppd"}) {
        const auto content = [&] { return contentAt(path(name)); };
        EXPECT_EQ(asMyself(content), rootFollows ? "a" : kStrangersLink) << name;
        EXPECT_EQ(asUser(content), nobodyFollows ? "a" : kStrangersLink) << name;
    }
}

TEST_P(LinkOwnersTest, DecideWhetherALinkToNothingIsFollowed) {
    const auto content = [&] { return contentAt(path("dangling")); };
    const uid_t owner = isRoot() ? GetParam().linkOwner : ::geteuid();
    EXPECT_EQ(asMyself(content),
              owner == 0 || owner == ::geteuid() ? "nothing called none.ppd" : kStrangersLink);
    EXPECT_EQ(asUser(content), owner != kStranger ? "nothing called none.ppd" : kStrangersLink);
}

INSTANTIATE_TEST_SUITE_P(
    Owners, LinkOwnersTest,
    ::testing::Values(OwnersOfLink{"RootsLinkToRootsFile", 0, 0, true, true},
                      OwnersOfLink{"RootsLinkToAUsersFile", 0, kNobody, true, true},
                      OwnersOfLink{"AUsersLinkToHisFile", kNobody, kNobody, true, true},
                      OwnersOfLink{"AUsersLinkToRootsFile", kNobody, 0, false, true},
                      OwnersOfLink{"AStrangersLinkToHisFile", kStranger, kStranger, true, true},
                      OwnersOfLink{"AStrangersLinkToRootsFile", kStranger, 0, false, false},
                      OwnersOfLink{"AStrangersLinkToAUsersFile", kStranger, kNobody, false, false}),
    [](const auto& test) { return test.param.testName; });

TEST_F(FilePlaceTest, RefusesAStrangersLinkOnTheWayOfRootsLink) {
    link("real/a.ppd", "strangers");
    link("strangers", "own");
    if (isRoot()) {
        giveTo(kStranger, path("strangers"));
    }
    EXPECT_EQ(asMyself([&] { return contentAt(path("own")); }), isRoot() ? kStrangersLink : "a");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
