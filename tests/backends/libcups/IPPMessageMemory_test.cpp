// What is left of an answer when memory runs out while libcups reads it.
#include <cups/cups.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <string>

#include "backends/libcups/IPPMessage.h"
#include "tests/support/IPPBytes.h"

namespace {

/// How many allocations of this thread are still granted; negative for any number.
thread_local long granted = -1;

bool isGranted() {
    if (granted > 0) {
        --granted;
        return true;
    }
    return granted < 0;
}

}  // namespace

// The C library's own, under their second names.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void* malloc(std::size_t size) {
    return isGranted() ? __libc_malloc(size) : nullptr;
}
void* calloc(std::size_t count, std::size_t size) {
    return isGranted() ? __libc_calloc(count, size) : nullptr;
}
void* realloc(void* block, std::size_t size) {
    return isGranted() ? __libc_realloc(block, size) : nullptr;
}
}

namespace TkPPDUpdating::Testing {
namespace {

std::string answer() {
    IPPBytes bytes;
    bytes.keyword("sides-supported", "one-sided").keyword("", "two-sided-long-edge");
    for (const char* name : {"media-col-database", "", ""}) {
        bytes.value(0x34, name, "")
            .value(0x4A, "", "media-type")
            .value(0x42, "", "Type of the name \"" + std::string(name) + "\"")
            .value(0x4A, "", "media-info")
            .value(0x41, "", "Text")
            .value(0x37, "", "");
    }
    bytes.value(0x30, "printer-supply", "type=ink;level=3;").value(0x30, "", "type=toner;");
    bytes.integer("marker-levels", 3);
    return bytes.end();
}

/// What becomes of a message. Newer versions of libcups (2.4.20) end the process at some places
/// where they get no memory; nothing is taken for a message then either.
enum class End { refused, whole, notWhole, enough, died };

constexpr bool kMayLibcupsDie =
    CUPS_VERSION_MAJOR * 10'000 + CUPS_VERSION_MINOR * 100 + CUPS_VERSION_PATCH > 2'04'10;

/// In a process of its own, with that many allocations.
End endWith(long number, const std::string& bytes) {
    const pid_t child = ::fork();
    if (child == 0) {
        granted = number;
        const IPPMessage message = IPPMessageWithBytes(bytes);
        const bool isEnough = granted > 0;  // Some were left.
        granted = -1;
        const End end = !message                                   ? End::refused
                        : ippLength(message.get()) != bytes.size() ? End::notWhole
                        : isEnough                                 ? End::enough
                                                                   : End::whole;
        ::_exit(static_cast<int>(end));
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? static_cast<End>(WEXITSTATUS(status)) : End::died;
}

TEST(IPPMessageMemory, IsAWholeMessageOrNoneWhereverItRunsOut) {
    const std::string bytes = answer();
    ASSERT_NE(IPPMessageWithBytes(bytes), nullptr);
    long refused = 0;
    End end = End::refused;
    for (long number = 0; end != End::enough; ++number) {
        ASSERT_LT(number, 10'000);
        end = endWith(number, bytes);
        EXPECT_NE(end, End::notWhole) << "after " << number;
        EXPECT_TRUE(end != End::died || kMayLibcupsDie) << "after " << number;
        refused += end == End::refused || end == End::died ? 1 : 0;
    }
    EXPECT_GT(refused, 10);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
