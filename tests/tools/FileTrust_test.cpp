#include "backends/modules/FileTrust.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

class FileTrust : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directory(root_.path() / "inner");
        fs::permissions(root_.path() / "inner", fs::perms(0755));
        file_ = fs::canonical(root_.write("inner/module.so", "code"));
        fs::permissions(file_, fs::perms(0644));
    }

    std::string reason(uid_t user = ::geteuid()) const {
        return reasonNotToTrust(file_, user).value_or("");
    }

    TemporaryDirectory root_;
    fs::path file_;
};

TEST_F(FileTrust, AFileOfOnesOwnIsTrusted) {
    EXPECT_EQ(reason(), "");
}

TEST_F(FileTrust, AFileOfRootIsTrustedByEverybody) {
    // The shell of every system, whose folders are root's.
    const fs::path shell = fs::canonical("/bin/sh");
    EXPECT_EQ(reasonNotToTrust(shell, 12345), std::nullopt);
}

TEST_F(FileTrust, AFileOfSomebodyElseIsNot) {
    // Root can give it away, anybody else can only ask for another.
    const bool isRoot = ::geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(::chown(file_.c_str(), 12345, 0), 0);
    }
    EXPECT_EQ(reason(isRoot ? 0 : ::geteuid() + 1),
              "belongs to user " + std::to_string(isRoot ? 12345 : ::geteuid()) +
                  "; it must belong to root or to you");
}

TEST_F(FileTrust, AFileThatOthersCanWriteToIsNot) {
    // A group that is not root's, which root has to give it.
    ASSERT_EQ(::chown(file_.c_str(), ::geteuid(), ::geteuid() == 0 ? 12345 : ::getegid()), 0);
    for (const unsigned mode : {0664U, 0646U, 0666U}) {
        fs::permissions(file_, fs::perms(mode));
        EXPECT_EQ(reason(), "can be written to by others than its owner; \"chmod go-w " +
                                file_.string() + "\" mends that");
    }
}

TEST_F(FileTrust, AFolderThatOthersCanWriteToIsNotUnlessOnlyOwnersRemoveThere) {
    const fs::path folder = file_.parent_path();
    fs::permissions(folder, fs::perms(0777));
    EXPECT_EQ(reason(), "its folder " + folder.string() +
                            " can be written to by others than its owner; \"chmod go-w " +
                            folder.string() + "\" mends that");
    fs::permissions(folder, fs::perms(01777));
    EXPECT_EQ(reason(), "");
}

TEST_F(FileTrust, AFolderOrADeviceIsNoFileToLoad) {
    EXPECT_EQ(reasonNotToTrust(file_.parent_path(), ::geteuid()), "is no regular file");
    EXPECT_EQ(reasonNotToTrust("/dev/null", ::geteuid()), "is no regular file");
    EXPECT_EQ(reasonNotToTrust(file_.parent_path() / "none", ::geteuid()),
              "No such file or directory");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
