#include "text/LargeString.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

namespace TkPPDUpdating::Testing {
namespace {

constexpr std::size_t kLarge = std::size_t{16} * 1024 * 1024;

/// The flags of the process's mapping that the byte is in (proc(5), /proc/PID/smaps).
std::string flagsOfMapping(const void* byte) {
    std::ifstream mappings("/proc/self/smaps");
    const auto wanted = reinterpret_cast<std::uintptr_t>(byte);
    bool isHere = false;
    for (std::string line; std::getline(mappings, line);) {
        std::istringstream range(line);
        std::uintptr_t first = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        if (range >> std::hex >> first >> dash >> end && dash == '-') {
            isHere = first <= wanted && wanted < end;
        } else if (isHere && line.starts_with("VmFlags:")) {
            return line + " ";
        }
    }
    return {};
}

TEST(LargeString, HasRoomAndNothingInIt) {
    for (const std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{4096}, kLarge}) {
        const std::string string = stringWithRoom(room);
        EXPECT_EQ(string, "");
        EXPECT_GE(string.capacity(), room);
    }
}

TEST(LargeString, StaysWhereItIsWhenItIsFilledAndHandedOn) {
    std::string string = stringWithRoom(kLarge);
    const auto place = reinterpret_cast<std::uintptr_t>(string.data());
    string.append(kLarge - 1, 'a').append("b");
    const std::string other = std::move(string);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(other.data()), place);
    EXPECT_EQ(other.size(), kLarge);
    EXPECT_EQ(other.find_first_not_of('a'), kLarge - 1);
}

TEST(LargeString, AsksForLargePagesWhereTheSystemHasThem) {
    void* const own =
        ::mmap(nullptr, kLarge, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(own, MAP_FAILED);
    const bool hasLargePages = ::madvise(own, kLarge, MADV_HUGEPAGE) == 0;
    const std::string expected = flagsOfMapping(own);
    ::munmap(own, kLarge);
    const std::string string = stringWithRoom(kLarge);
    const bool isAsked =
        flagsOfMapping(string.data() + kLarge / 2).find(" hg ") != std::string::npos;
    EXPECT_EQ(isAsked, hasLargePages && expected.find(" hg ") != std::string::npos);
}

TEST(LargeString, ThatThereIsNoRoomForRaises) {
    EXPECT_ANY_THROW((void)stringWithRoom(std::string().max_size() + 1));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
