#include "tools/FileAttributes.h"
#include "tests/support/FileContents.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"
#include "tests/tools/AsUser.h"
#include "tests/tools/ToolRun.h"
#include "tools/AtomicReplacement.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr const char* kDefaultAccessList = "system.posix_acl_default";

/// An access list in the kernel's form (linux/posix_acl_xattr.h): version 2, then tag, permissions
/// and user of each entry in little-endian order.
class AccessList {
  public:
    AccessList& entry(unsigned tag, unsigned permissions, unsigned user = 0xFFFFFFFF) {
        append(tag, 2);
        append(permissions, 2);
        append(user, 4);
        return *this;
    }
    const std::string& bytes() const { return bytes_; }

  private:
    void append(unsigned number, int length) {
        for (int byte = 0; byte < length; ++byte) {
            bytes_ += static_cast<char>((number >> (8U * static_cast<unsigned>(byte))) & 0xFFU);
        }
    }

    std::string bytes_ = {2, 0, 0, 0};
};

/// The owner reads and writes, a user of his own choice reads, group and others nothing.
std::string listForOneReader() {
    return AccessList()
        .entry(0x01, 6)
        .entry(0x02, 4, 7)
        .entry(0x04, 0)
        .entry(0x10, 4)
        .entry(0x20, 0)
        .bytes();
}

using Attributes = std::map<std::string, std::string>;

Attributes attributesOf(const std::string& path) {
    std::string names(65536, '\0');
    const ssize_t length = ::listxattr(path.c_str(), names.data(), names.size());
    names.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    Attributes attributes;
    for (std::size_t begin = 0; begin < names.size();) {
        const std::string name = names.c_str() + begin;
        std::string value(65536, '\0');
        const ssize_t size = ::getxattr(path.c_str(), name.c_str(), value.data(), value.size());
        attributes[name] = value.substr(0, size < 0 ? 0 : static_cast<std::size_t>(size));
        begin += name.size() + 1;
    }
    return attributes;
}

/// Sets an attribute; false when this file system has none of the kind, or only root may.
bool set(const std::string& path, const std::string& name, const std::string& value) {
    const bool isSet = ::setxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0) == 0;
    EXPECT_TRUE(isSet || errno == ENOTSUP || (errno == EPERM && !isRoot())) << name;
    return isSet;
}

mode_t modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

std::string replaced(const std::string& path) {
    FileInPlace(path).replace("new");
    return contentsOfFile(path);
}

class FileAttributesTest : public ::testing::Test {
  protected:
    TemporaryDirectory directory_;
    const std::string file_ = directory_.write("folder/a.ppd", "old");
    const std::string folder_ = (directory_.path() / "folder").string();

    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder_), {}));
    }
};

TEST_F(FileAttributesTest, AreKept) {
    set(file_, "user.origin", std::string("a\0b", 3));
    set(file_, "user.empty", "");
    set(file_, "user.long", std::string(2000, 'x'));
    set(file_, "trusted.tkppdupdate", "root's");
    set(file_, "security.selinux", "system_u:object_r:cupsd_etc_t:s0");
    set(file_, kAccessList, listForOneReader());
    const Attributes before = attributesOf(file_);
    const mode_t mode = modeOf(file_);
    EXPECT_EQ(replaced(file_), "new");
    EXPECT_EQ(attributesOf(file_), before);
    EXPECT_EQ(modeOf(file_), mode);
}

TEST_F(FileAttributesTest, OfAFileThatIsWrittenAsOutputAreKeptToo) {
    set(file_, "user.origin", "a");
    set(file_, kAccessList, listForOneReader());
    const Attributes before = attributesOf(file_);
    replaceFileAtomically(file_, "new");
    EXPECT_EQ(contentsOfFile(file_), "new");
    EXPECT_EQ(attributesOf(file_), before);
}

TEST_F(FileAttributesTest, TakeNoAccessListFromTheFolder) {
    ASSERT_EQ(::chmod(file_.c_str(), 0640), 0);
    set(folder_, kDefaultAccessList, listForOneReader());
    EXPECT_EQ(replaced(file_), "new");
    EXPECT_EQ(attributesOf(file_).count(kAccessList), 0U);
    EXPECT_EQ(modeOf(file_), 0640U);
}

TEST_F(FileAttributesTest, OfANewFileAreWhatTheFolderGives) {
    set(folder_, kDefaultAccessList, listForOneReader());
    const std::string sibling = directory_.write("folder/sibling", "");
    const std::string created = (directory_.path() / "folder/new.ppd").string();
    replaceFileAtomically(created, "new");
    EXPECT_EQ(attributesOf(created), attributesOf(sibling));
    EXPECT_EQ(modeOf(created), modeOf(sibling));
}

TEST_F(FileAttributesTest, AreKeptWhereTheFileMayNotBeWrittenToAnyMore) {
    set(file_, "user.origin", "a");
    set(file_, kAccessList,
        AccessList()
            .entry(0x01, 4)
            .entry(0x02, 4, 7)
            .entry(0x04, 4)
            .entry(0x10, 4)
            .entry(0x20, 4)
            .bytes());
    ASSERT_EQ(::chmod(file_.c_str(), 0444), 0);
    std::filesystem::permissions(directory_.path(), std::filesystem::perms(0755));
    if (isRoot()) {
        giveTo(kNobody, file_);
        giveTo(kNobody, folder_);
    }
    const Attributes before = attributesOf(file_);
    EXPECT_EQ(asUser([&] { return replaced(file_); }), "new");
    EXPECT_EQ(attributesOf(file_), before);
    EXPECT_EQ(modeOf(file_), 0444U);
}

TEST_F(FileAttributesTest, NeverSetUserOrGroup) {
    ASSERT_EQ(::chmod(file_.c_str(), 07755), 0);
    EXPECT_EQ(replaced(file_), "new");
    EXPECT_EQ(modeOf(file_), 0755U);
    ASSERT_EQ(::chmod(file_.c_str(), 06750), 0);
    replaceFileAtomically(file_, "newer");
    EXPECT_EQ(modeOf(file_), 0750U);
}

TEST_F(FileAttributesTest, NeverCarryCapabilitiesOn) {
    // Version 2 (capabilities(7)), with CAP_NET_RAW permitted.
    const std::string capability(
        "\x01\x00\x00\x02\x00\x20\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
        "\x00\x00\x00\x00",
        20);
    set(file_, "security.capability", capability);
    EXPECT_EQ(replaced(file_), "new");
    EXPECT_EQ(attributesOf(file_).count("security.capability"), 0U);
}

TEST_F(FileAttributesTest, ThatCannotBeKeptKeepTheFile) {
    std::filesystem::permissions(directory_.path(), std::filesystem::perms(0755));
    // Only root may set it, and everybody may read it.
    const bool isLabelled = set(file_, "security.tkppdupdate", "label") && isRoot();
    if (isRoot()) {
        giveTo(kNobody, file_);
        giveTo(kNobody, folder_);
    }
    EXPECT_EQ(asUser([&] { return replaced(file_); }),
              isLabelled ? "its extended attribute \"security.tkppdupdate\" cannot be kept: "
                           "Operation not permitted"
                         : "new");
    EXPECT_EQ(contentsOfFile(file_), isLabelled ? "old" : "new");
    EXPECT_EQ(filesInFolder(), 1U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
