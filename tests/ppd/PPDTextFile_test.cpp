#include "ppd/PPDTextFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <system_error>
#include <utility>

#include "tests/support/TemporaryDirectory.h"
#include "text/FileDescriptor.h"

namespace {

/// What happens before the next read, which is told the file's descriptor.
std::function<void(int)> beforeNextRead;  // NOLINT(*-avoid-non-const-global-variables)
/// So many of the next reads are interrupted by a signal.
int interruptions = 0;  // NOLINT(*-avoid-non-const-global-variables)

}  // namespace

// Stands for the "read" of the C library in this program. What a file system does seldom cannot be
// had from it otherwise.
extern "C" ssize_t readOfTests(int descriptor, void* bytes, std::size_t size) __asm__("read");

extern "C" ssize_t readOfTests(int descriptor, void* bytes, std::size_t size) {
    if (beforeNextRead) {
        std::exchange(beforeNextRead, nullptr)(descriptor);
    }
    if (interruptions > 0) {
        --interruptions;
        errno = EINTR;
        return -1;
    }
    return ::syscall(SYS_read, descriptor, bytes, size);
}

namespace TkPPDUpdating::Testing {
namespace {

std::string messageOf(int error) {
    return std::generic_category().message(error);
}

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

TEST(PPDTextFile, IsOpenedToBeReadByThisProcessAloneAndIsNotWaitedFor) {
    const TemporaryDirectory directory;
    int flags = -1;
    int flagsOfDescriptor = -1;
    beforeNextRead = [&](int descriptor) {
        flags = ::fcntl(descriptor, F_GETFL);
        flagsOfDescriptor = ::fcntl(descriptor, F_GETFD);
    };
    EXPECT_TRUE(PPDTextWithContentsOfFile(directory.write("file.ppd", "text")));
    ASSERT_NE(flags, -1);
    EXPECT_EQ(flags & O_ACCMODE, O_RDONLY);
    EXPECT_EQ(flags & O_NONBLOCK, O_NONBLOCK);
    EXPECT_EQ(flagsOfDescriptor, FD_CLOEXEC);
}

TEST(PPDTextFile, AReadThatASignalInterruptsIsMadeAgain) {
    const TemporaryDirectory directory;
    interruptions = 3;
    const PPDText text = PPDTextWithContentsOfFile(directory.write("file.ppd", "text"));
    EXPECT_EQ(interruptions, 0);
    ASSERT_TRUE(text);
    EXPECT_EQ(*text, "text");
}

TEST(PPDTextFile, AFileThatGrowsOrShrinksWhileItIsReadIsReadToItsEnd) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file.ppd", "0123456789");
    const std::string more(200'000, 'x');
    beforeNextRead = [&](int) { std::ofstream(path, std::ios::app) << more; };
    const PPDText grown = PPDTextWithContentsOfFile(path);
    ASSERT_TRUE(grown);
    EXPECT_TRUE(*grown == "0123456789" + more);
    beforeNextRead = [&](int) { std::filesystem::resize_file(path, 4); };
    const PPDText shrunk = PPDTextWithContentsOfFile(path);
    ASSERT_TRUE(shrunk);
    EXPECT_EQ(*shrunk, "0123");
}

TEST(PPDTextFile, ADescriptorThatCannotBeReadIsToldWithTheCause) {
    const TemporaryDirectory directory;
    std::string reason;
    const FileDescriptor file(
        ::open(directory.write("file.ppd", "text").c_str(), O_WRONLY | O_CLOEXEC));
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(PPDTextWithContentsOfDescriptor(file.get(), &reason), nullptr);
    EXPECT_EQ(reason, messageOf(EBADF));
    reason.clear();
    EXPECT_EQ(PPDTextWithContentsOfDescriptor(-1, &reason), nullptr);
    EXPECT_EQ(reason, messageOf(EBADF));
}

TEST(PPDTextFile, ADescriptorIsReadOnFromWhereItStandsAndStaysOpen) {
    const TemporaryDirectory directory;
    const FileDescriptor file(
        ::open(directory.write("file.ppd", "text").c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::lseek(file.get(), 1, SEEK_SET), 1);
    const PPDText text = PPDTextWithContentsOfDescriptor(file.get());
    ASSERT_TRUE(text);
    EXPECT_EQ(*text, "ext");
    EXPECT_EQ(::lseek(file.get(), 0, SEEK_CUR), 4);
}

TEST(PPDTextFile, AMissingFileIsNoText) {
    const TemporaryDirectory directory;
    EXPECT_EQ(refusal((directory.path() / "missing.ppd").string()), messageOf(ENOENT));
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
    EXPECT_EQ(refusal(directory.path().string()), "is a directory");
}

TEST(PPDTextFile, ADeviceIsNoText) {
    EXPECT_EQ(refusal("/dev/full"), "is not a regular file");
    EXPECT_EQ(refusal("/dev/zero"), "is not a regular file");
}

TEST(PPDTextFile, AFIFOIsNoTextAndIsNotWaitedFor) {
    const TemporaryDirectory directory;
    const std::string path = (directory.path() / "fifo.ppd").string();
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(refusal(path), "is not a regular file");
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
    EXPECT_EQ(refusal(directory.write("latin1.ppd", before + "\xE9 ")),
              "is not valid UTF-8 at byte 1234");
    EXPECT_EQ(refusal(directory.write("cut.ppd", before + "\xC3")),
              "is not valid UTF-8 at byte 1234");
    EXPECT_EQ(refusal(directory.write("first.ppd", "\xFF")), "is not valid UTF-8 at byte 0");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
