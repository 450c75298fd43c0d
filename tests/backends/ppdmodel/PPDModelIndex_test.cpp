#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "text/SeededTextHash.h"

namespace TkPPDUpdating {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string kFirstLine = "*PPD-Adobe: \"4.3\"\n";

std::shared_ptr<const PPDModelFile> fileWithLines(const std::string& lines) {
    std::string reason;
    auto file = PPDModelFile::fileWithText(makePPDText(kFirstLine + lines), &reason);
    EXPECT_TRUE(file) << reason;
    return file;
}

std::vector<std::string> values(const std::vector<const OrbPPDAttribute*>& attributes) {
    std::vector<std::string> values;
    values.reserve(attributes.size());
    for (const OrbPPDAttribute* attribute : attributes) {
        values.emplace_back(attribute->value().value_or("(none)"));
    }
    return values;
}

TEST(PPDModelIndex, AnswersEveryNameOfARandomFileInFileOrder) {
    const std::vector<std::string> keywords{"A", "B", "AB", "fr.A", "Default"};
    const std::vector<std::string> specs{"", "x", "y", "xy", "Bx", "*x"};
    for (unsigned seed = 0; seed < 100; ++seed) {
        std::mt19937 generator(seed);
        std::map<std::string, std::vector<std::string>> byKeyword;
        std::map<std::pair<std::string, std::string>, std::vector<std::string>> bySpec;
        std::string lines;
        for (unsigned line = 0; line < seed * 3; ++line) {
            const std::string& keyword = keywords[generator() % keywords.size()];
            const std::string& spec = specs[generator() % specs.size()];
            const std::string value = std::to_string(line);
            lines.append("*").append(keyword).append(" ").append(spec).append(": ");
            lines.append(value).append("\n");
            byKeyword[keyword].push_back(value);
            bySpec[{keyword, spec}].push_back(value);
        }
        const auto file = fileWithLines(lines);
        for (const std::string& keyword : keywords) {
            EXPECT_EQ(values(file->attributesForName(keyword)), byKeyword[keyword]) << lines;
            for (const std::string& spec : specs) {
                const auto expected =
                    spec.empty() ? std::vector<std::string>() : bySpec[{keyword, spec}];
                EXPECT_EQ(values(file->attributesForName_spec(keyword, spec)), expected) << lines;
            }
        }
    }
}

TEST(PPDModelIndex, DoesNotMixUpKeywordAndOptionKeyword) {
    const auto file = fileWithLines("*AB C: 1\n*A BC: 2\n*C AB: 3\n");
    EXPECT_THAT(values(file->attributesForName_spec("AB", "C")), ElementsAre("1"));
    EXPECT_THAT(values(file->attributesForName_spec("A", "BC")), ElementsAre("2"));
    EXPECT_THAT(values(file->attributesForName_spec("C", "AB")), ElementsAre("3"));
    EXPECT_THAT(file->attributesForName_spec("ABC", ""), IsEmpty());
    EXPECT_THAT(file->attributesForName_spec("", "ABC"), IsEmpty());
}

// A cost above linear would take these from well under a second to minutes or hours.

TEST(PPDModelIndex, ReadsBackEachOfTwoHundredThousandAttributesOfOneKeyword) {
    constexpr int kCount = 200'000;
    std::string lines = "*OpenUI *M: PickOne\n";
    for (int i = 0; i < kCount; ++i) {
        lines.append("*M c").append(std::to_string(i)).append(": x\n");
    }
    const auto file = fileWithLines(lines);
    EXPECT_THAT(file->attributesForName("M"), SizeIs(kCount));
    const OrbPPDOption* option = file->optionForName("M");
    ASSERT_TRUE(option);
    for (int i = 0; i < kCount; ++i) {
        const std::string name = "c" + std::to_string(i);
        ASSERT_EQ(file->attributesForName_spec("M", name).size(), 1U);
        ASSERT_TRUE(option->choiceForName(name));
    }
    EXPECT_FALSE(option->choiceForName("c" + std::to_string(kCount)));
}

TEST(PPDModelIndex, TakesTwoHundredThousandAttributesOfOneName) {
    std::string lines;
    for (int i = 0; i < 200'000; ++i) {
        lines += "*A x: y\n";
    }
    const auto file = fileWithLines(lines);
    EXPECT_THAT(file->attributesForName_spec("A", "x"), SizeIs(200'000));
    EXPECT_THAT(file->mainKeywords(), ElementsAre("A", "PPD-Adobe"));
}

TEST(PPDModelIndex, TakesTensOfThousandsOfKeywordsAndOptions) {
    constexpr int kCount = 50'000;
    std::string lines;
    for (int i = 0; i < kCount; ++i) {
        const std::string name = "o" + std::to_string(i);
        lines.append("*OpenUI *").append(name).append(": PickOne\n*Default").append(name);
        lines.append(": x\n");
    }
    const auto file = fileWithLines(lines);
    EXPECT_THAT(file->optionNames(), SizeIs(kCount));
    EXPECT_EQ(file->optionForName("o49999")->defaultChoiceName(), "x");
    EXPECT_THAT(file->mainKeywords(), SizeIs(kCount + 2));
}

TEST(PPDModelIndex, TakesAMillionLinesThatAreNoAttributes) {
    std::string lines;
    for (int i = 0; i < 1'000'000; ++i) {
        lines += "*\n";
    }
    EXPECT_THAT(fileWithLines(lines)->mainKeywords(), ElementsAre("PPD-Adobe"));
}

TEST(PPDModelIndex, TakesOneLineOfAHundredMillionBytes) {
    constexpr std::size_t kLength = 100'000'000;
    const auto file = fileWithLines("*A: " + std::string(kLength, 'x'));
    EXPECT_EQ(file->attributesForName("A").at(0)->value()->size(), kLength);
    EXPECT_THAT(fileWithLines("*" + std::string(kLength, ' '))->mainKeywords(),
                ElementsAre("PPD-Adobe"));
}

TEST(PPDModelIndex, TakesAValueOfAMillionLines) {
    constexpr std::size_t kCount = 1'000'000;
    const auto file = fileWithLines("*A: \"" + std::string(kCount, '\n') + "\"\n");
    EXPECT_EQ(file->attributesForName("A").at(0)->value(), std::string(kCount, ' '));
}

TEST(SeededTextHash, IsTheSameForTheSameTextAndContext) {
    EXPECT_EQ(SeededTextHash::of("MediaType"), SeededTextHash::of(std::string("MediaType")));
    EXPECT_EQ(SeededTextHash::of("custom1", 7), SeededTextHash::of("custom1", 7));
    EXPECT_EQ(SeededTextHash()("MediaType"), SeededTextHash::of("MediaType"));
}

TEST(SeededTextHash, TellsTextsContextsAndLengthsApart) {
    // By chance two of these are equal once in some ten thousand million runs.
    std::set<std::uint64_t> hashes;
    for (std::size_t length = 0; length < 40; ++length) {
        hashes.insert(SeededTextHash::of(std::string(length, '\0')));
        hashes.insert(SeededTextHash::of(std::string(length, 'a'), 1));
    }
    for (int i = 0; i < 20'000; ++i) {
        hashes.insert(SeededTextHash::of("custom" + std::to_string(i)));
        hashes.insert(SeededTextHash::of("x", 1000U + static_cast<unsigned>(i)));
    }
    EXPECT_EQ(hashes.size(), 40'080U);
}

}  // namespace
}  // namespace TkPPDUpdating
