#include "ppd/PPDTextFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace TkPPDUpdating::Testing {
namespace {

/// Expects that the file is refused, and gives the reason.
std::string refusal(const std::string& path) {
    std::string reason;
    EXPECT_EQ(PPDTextWithContentsOfFile(path, &reason), nullptr) << path;
    EXPECT_EQ(PPDTextWithContentsOfFile(path), nullptr) << path;
    EXPECT_FALSE(reason.empty()) << path;
    if (!path.empty()) {
        EXPECT_EQ(reason.find(path), std::string::npos) << reason;
    }
    return reason;
}

TEST(PPDTextFile, GivesTheBytesOfTheFileAsTheyAre) {
    using namespace std::string_literals;
    const TemporaryDirectory directory;
    for (const std::string& bytes :
         {"*PPD-Adobe: \"4.3\"\n"s, "no line feed at the end"s, "a\r\nb\rc\n"s, "a\0b"s,
          "\xEF\xBB\xBF*PPD"s, "caf\xC3\xA9 \xF0\x9F\x98\x80"s, std::string(3'000'000, 'x')}) {
        const PPDText text = PPDTextWithContentsOfFile(directory.write("file.ppd", bytes));
        ASSERT_TRUE(text);
        EXPECT_EQ(text->size(), bytes.size());
        EXPECT_TRUE(*text == bytes);
    }
}

TEST(PPDTextFile, AnEmptyFileIsAnEmptyText) {
    const TemporaryDirectory directory;
    const PPDText text = PPDTextWithContentsOfFile(directory.write("empty.ppd", ""));
    ASSERT_TRUE(text);
    EXPECT_EQ(*text, "");
}

TEST(PPDTextFile, FollowsASymbolicLinkToAFile) {
    const TemporaryDirectory directory;
    const auto link = directory.path() / "link.ppd";
    std::filesystem::create_symlink(directory.write("file.ppd", "text"), link);
    const PPDText text = PPDTextWithContentsOfFile(link.string());
    ASSERT_TRUE(text);
    EXPECT_EQ(*text, "text");
}

TEST(PPDTextFile, ASuccessLeavesTheReasonAlone) {
    const TemporaryDirectory directory;
    std::string reason = "before";
    EXPECT_TRUE(PPDTextWithContentsOfFile(directory.write("file.ppd", "text"), &reason));
    EXPECT_EQ(reason, "before");
}

TEST(PPDTextFile, AMissingFileIsNoText) {
    const TemporaryDirectory directory;
    refusal((directory.path() / "missing.ppd").string());
    refusal((directory.path() / "missing" / "file.ppd").string());
    refusal("");
}

TEST(PPDTextFile, ABrokenLinkIsNoText) {
    const TemporaryDirectory directory;
    const auto link = directory.path() / "link.ppd";
    std::filesystem::create_symlink(directory.path() / "missing.ppd", link);
    refusal(link.string());
}

TEST(PPDTextFile, ADirectoryIsNoText) {
    const TemporaryDirectory directory;
    refusal(directory.path().string());
}

TEST(PPDTextFile, ADeviceIsNoText) {
    refusal("/dev/full");
    refusal("/dev/zero");
}

TEST(PPDTextFile, AFIFOIsNoTextAndIsNotWaitedFor) {
    const TemporaryDirectory directory;
    const std::string path = (directory.path() / "fifo.ppd").string();
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    refusal(path);
}

TEST(PPDTextFile, AFileThatIsTooLargeToBeAPPDIsNotRead) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("huge.ppd", "*PPD-Adobe: \"4.3\"\n");
    // Sparse: it takes no room on the disk, and would fill the memory.
    std::filesystem::resize_file(path, std::uintmax_t{1} << 40U);
    EXPECT_EQ(refusal(path), "is larger than 67108864 bytes");
    std::filesystem::resize_file(path, 67108865);
    EXPECT_EQ(refusal(path), "is larger than 67108864 bytes");
    std::filesystem::resize_file(path, 67108864);
    const PPDText text = PPDTextWithContentsOfFile(path);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), 67108864U);
}

TEST(PPDTextFile, AByteThatIsNotUTF8IsToldWithItsOffset) {
    const TemporaryDirectory directory;
    const std::string before(1234, 'a');
    EXPECT_NE(refusal(directory.write("latin1.ppd", before + "\xE9 ")).find("1234"),
              std::string::npos);
    EXPECT_NE(refusal(directory.write("cut.ppd", before + "\xC3")).find("1234"), std::string::npos);
    EXPECT_NE(refusal(directory.write("first.ppd", "\xFF")).find('0'), std::string::npos);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
