#include "ppd/TextBlock.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <random>
#include <string_view>

namespace TkPPDUpdating {

void PrintTo(const TextBlockMasks& masks, std::ostream* out) {
    *out << std::hex << masks.lineFeeds << ' ' << masks.quotes << ' ' << masks.asterisks << ' '
         << masks.isWide << ' ' << masks.hasNUL;
}

void PrintTo(const KeywordBlockMasks& masks, std::ostream* out) {
    *out << std::hex << masks.ends << ' ' << masks.fullStops;
}

namespace Testing {
namespace {

using namespace std::string_view_literals;

using Block = std::array<char, kTextBlock>;

TextBlockMasks masksByteByByte(const Block& block) {
    TextBlockMasks masks;
    for (std::size_t i = 0; i < block.size(); ++i) {
        const std::uint64_t bit = std::uint64_t{1} << i;
        masks.lineFeeds |= block[i] == '\n' ? bit : 0;
        masks.quotes |= block[i] == '"' ? bit : 0;
        masks.asterisks |= block[i] == '*' ? bit : 0;
        masks.isWide = masks.isWide || static_cast<unsigned char>(block[i]) >= 0x80;
        masks.hasNUL = masks.hasNUL || block[i] == '\0';
    }
    return masks;
}

KeywordBlockMasks keywordMasksByteByByte(const char* bytes) {
    KeywordBlockMasks masks;
    for (unsigned i = 0; i < kKeywordBlock; ++i) {
        const char byte = bytes[i];
        const bool ends = byte == ' ' || byte == '\t' || byte == '/' || byte == ':' || byte == '\n';
        masks.ends |= ends ? 1U << i : 0;
        masks.fullStops |= byte == '.' ? 1U << i : 0;
    }
    return masks;
}

unsigned lengthOfSameBytesByteByByte(const char* bytes, const char* others) {
    unsigned length = 0;
    while (length < kKeywordBlock && bytes[length] == others[length]) {
        ++length;
    }
    return length;
}

/// Blocks of nothing but what is looked for, of what differs from it in one bit, and of any bytes.
class Blocks {
  public:
    Block next() {
        Block block{};
        const bool isAny = random_() % 4 == 0;
        for (char& byte : block) {
            byte = isAny ? static_cast<char>(random_()) : kTelling[random_() % kTelling.size()];
        }
        return block;
    }

  private:
    static constexpr std::string_view kTelling =
        "\n\x0B\x8A\"\xA2#*\xAA+\0\x01\x80\xFF\x7F \xA0!\t\x89/\xAF.\xAE:\xBA;aaaaaaaa"sv;
    std::mt19937 random_{1};
};

constexpr int kTimes = 4'000;

TEST(TextBlock, WordsAndVectorsTellWhatReadingByteByByteTells) {
    Blocks blocks;
    for (int i = 0; i < kTimes; ++i) {
        const Block block = blocks.next();
        const auto expected = masksByteByByte(block);
        ASSERT_EQ(PortableTextBlocks::masksOfTextBlock(block.data()), expected);
        ASSERT_EQ(TextBlocks::masksOfTextBlock(block.data()), expected);
    }
}

TEST(TextBlock, ABlockWithoutNULAndWideBytesSaysSo) {
    Block block{};
    // One whose lowest bit is set, too.
    for (const char byte : {'x', 'a'}) {
        block.fill(byte);
        for (const auto& masks : {PortableTextBlocks::masksOfTextBlock(block.data()),
                                  TextBlocks::masksOfTextBlock(block.data())}) {
            EXPECT_EQ(masks, TextBlockMasks());
        }
    }
}

TEST(TextBlock, CountsNoMoreThanABlockOfSameBytes) {
    Block block{};
    EXPECT_EQ(PortableTextBlocks::lengthOfSameBytes(block.data(), block.data()), kKeywordBlock);
    EXPECT_EQ(TextBlocks::lengthOfSameBytes(block.data(), block.data()), kKeywordBlock);
}

TEST(TextBlock, WordsAndVectorsFindWhereAKeywordEnds) {
    Blocks blocks;
    for (int i = 0; i < kTimes; ++i) {
        const Block block = blocks.next();
        const auto expected = keywordMasksByteByByte(block.data() + 5);
        ASSERT_EQ(PortableTextBlocks::masksOfKeywordBlock(block.data() + 5), expected);
        ASSERT_EQ(TextBlocks::masksOfKeywordBlock(block.data() + 5), expected);
    }
}

TEST(TextBlock, WordsAndVectorsCountTheSameBytes) {
    Blocks blocks;
    for (unsigned i = 0; i < kTimes; ++i) {
        const Block block = blocks.next();
        Block other = block;
        other.at(3 + i % (kKeywordBlock + 1)) ^= 0x10;
        const char* const bytes = block.data() + 3;
        const char* const others = other.data() + 3;
        const unsigned expected = lengthOfSameBytesByteByByte(bytes, others);
        ASSERT_EQ(expected, i % (kKeywordBlock + 1));
        ASSERT_EQ(PortableTextBlocks::lengthOfSameBytes(bytes, others), expected);
        ASSERT_EQ(TextBlocks::lengthOfSameBytes(bytes, others), expected);
    }
}

}  // namespace
}  // namespace Testing
}  // namespace TkPPDUpdating
