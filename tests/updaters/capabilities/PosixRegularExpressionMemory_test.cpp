// What becomes of expressions and their matches when memory runs out.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <new>
#include <optional>
#include <string>

#include "ppd/PPDText.h"
#include "updaters/capabilities/PosixRegularExpression.h"

namespace {

/// How many allocations of this thread are still granted; negative for any number.
thread_local long granted = -1;
/// How many blocks this thread has allocated and not given back.
thread_local long blocks = 0;

bool isGranted() {
    if (granted > 0) {
        --granted;
        return true;
    }
    if (granted == 0) {
        errno = ENOMEM;
    }
    return granted < 0;
}

void* counted(void* block) {
    blocks += block ? 1 : 0;
    return block;
}

}  // namespace

// The C library's own, under their second names.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void* malloc(std::size_t size) {
    return isGranted() ? counted(__libc_malloc(size)) : nullptr;
}
void* calloc(std::size_t count, std::size_t size) {
    return isGranted() ? counted(__libc_calloc(count, size)) : nullptr;
}
void* realloc(void* block, std::size_t size) {
    if (!isGranted()) {
        return nullptr;
    }
    void* const moved = __libc_realloc(block, size);
    if (!block) {
        return counted(moved);
    }
    blocks -= size == 0 ? 1 : 0;
    return moved;
}
void free(void* block) {
    blocks -= block ? 1 : 0;
    __libc_free(block);
}
}

namespace TkPPDUpdating::Testing {
namespace {

/// The result of the operation with that many allocations; nothing when it raised that there is no
/// memory.
template <typename Operation>
auto withAllocations(long number, const Operation& operation)
    -> std::optional<decltype(operation())> {
    struct Scope {
        explicit Scope(long most) { granted = most; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { granted = -1; }
    };
    try {
        const Scope scope(number);
        return operation();
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

constexpr long kMost = 10'000;
const char* const kExpression = "^(a|b)+[[:digit:]]{2}c$";

TEST(PosixRegularExpressionMemory, AnExpressionThatFindsNoneIsNotOneThatDoesNotCompile) {
    const std::string expression = kExpression;
    long refused = 0;
    for (; refused < kMost; ++refused) {
        const auto compiled = withAllocations(
            refused, [&] { return PosixRegularExpression::compiled(expression).has_value(); });
        if (compiled) {
            EXPECT_TRUE(*compiled) << "with " << refused << " allocations";
            break;
        }
    }
    EXPECT_GT(refused, 10);
    EXPECT_LT(refused, kMost);
}

TEST(PosixRegularExpressionMemory, AMatchThatFindsNoneIsNotALineThatStays) {
    const PPDText text = makePPDText("abab12c\na1c\nab\nb34c\n");
    ASSERT_TRUE(text.index());
    long refused = 0;
    for (; refused < kMost; ++refused) {
        const auto expression = PosixRegularExpression::compiled(kExpression);
        ASSERT_TRUE(expression);
        const auto result =
            withAllocations(refused, [&] { return expression->textByRemovingMatchingLines(text); });
        if (result) {
            EXPECT_EQ(**result, "a1c\nab\n") << "with " << refused << " allocations";
            break;
        }
    }
    EXPECT_GT(refused, 10);
    EXPECT_LT(refused, kMost);
}

TEST(PosixRegularExpressionMemory, AllIsGivenBack) {
    const PPDText text = makePPDText("abab12c\na1c\n");
    const auto use = [&] {
        const auto expression = PosixRegularExpression::compiled(kExpression);
        return expression ? expression->textByRemovingMatchingLines(text)->size() : 0;
    };
    ASSERT_EQ(use(), 4U);  // Some of it is made once.
    const long before = blocks;
    use();
    EXPECT_EQ(blocks - before, 0);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
