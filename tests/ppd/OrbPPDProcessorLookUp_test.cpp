#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ppd/OrbPPDProcessor.h"
#include "tests/ppd/ProcessorTesting.h"

namespace TkPPDUpdating::Testing {
namespace {

using MaybeText = std::optional<std::string_view>;
constexpr std::nullopt_t kNone = std::nullopt;

OrbPPDLineRange rangeIn(const std::string& content, MaybeText keyword, MaybeText spec = kNone,
                        MaybeText value = kNone) {
    return processorOver(content)->rangeOfAttributeWithKeyword_spec_value(keyword, spec, value);
}

std::optional<std::string> valueIn(const std::string& content, MaybeText keyword = "Key",
                                   MaybeText spec = kNone) {
    return processorOver(content)->valueForAttributeWithKeyword_spec(keyword, spec);
}

std::vector<std::string> localizationsIn(const std::string& content) {
    return processorOver(content)->localizations();
}

OrbPPDLineRange range(std::size_t location, std::size_t length) {
    return {location, length};
}

// Ranges

TEST(OrbPPDProcessorRange, ANullKeywordIsNotFound) {
    EXPECT_EQ(rangeIn("*: 1\n*Key: 1\n", kNone), kNotFound);
}

TEST(OrbPPDProcessorRange, AnAbsentAttributeIsNotFound) {
    EXPECT_EQ(rangeIn("*Key: 1\n", "Other"), kNotFound);
    EXPECT_EQ(rangeIn("*Key: 1\n", "Key", "Spec"), kNotFound);
    EXPECT_EQ(rangeIn("*Key: 1\n", "Key", kNone, "2"), kNotFound);
    EXPECT_EQ(rangeIn("", "Key"), kNotFound);
}

TEST(OrbPPDProcessorRange, TheFirstOfSeveralMatchingLinesWins) {
    const std::string content = "*Other: 1\n*Key: 2\n*Key A: 3\n*KEY: 4\n*Key a: 5\n*Key: 4\n";
    EXPECT_EQ(rangeIn(content, "Key"), range(1, 1));
    EXPECT_EQ(rangeIn(content, "Key", "A"), range(2, 1));
    EXPECT_EQ(rangeIn(content, "Key", kNone, "4"), range(3, 1));
    EXPECT_EQ(rangeIn(content, "Key", "A", "5"), range(4, 1));
}

TEST(OrbPPDProcessorRange, ALineWithoutOrWithTwoOrMoreQuotesIsOneLine) {
    for (const std::string line : {"*Key: 1", "*Key: \"1\"", "*Key: \"\"", "*Key: \"a\" \"b",
                                   "*Key: \"a\" \"b\"", "*Key: x\"\"", "*Key:"}) {
        EXPECT_EQ(rangeIn("*One: 1\n" + line + "\n*End\n", "Key"), range(1, 1)) << line;
    }
}

TEST(OrbPPDProcessorRange, AnOpenQuoteRunsToTheNextEndLineInclusive) {
    EXPECT_EQ(rangeIn("*One: 1\n*Key: \"a\nb\nc\nd\"\n*End\n*End\n", "Key"), range(1, 5));
    EXPECT_EQ(rangeIn("*Key: \"a\n*End\n", "Key"), range(0, 2));
}

TEST(OrbPPDProcessorRange, TheEndLineNeedNotFollowTheClosingQuote) {
    EXPECT_EQ(rangeIn("*Key: \"a\nb\"\n*Other: \"c\n*End\n", "Key"), range(0, 4));
}

TEST(OrbPPDProcessorRange, OnlyALineThatIsExactlyEndEndsAValue) {
    for (const std::string end :
         {"*end", "*END", "*End ", " *End", "*End\r", "*End:", "*EndX", "End", ""}) {
        EXPECT_EQ(rangeIn("*Key: \"a\nb\"\n" + end + "\n", "Key"), kNotFound) << '[' << end << ']';
        EXPECT_EQ(rangeIn("*Key: \"a\nb\"\n" + end + "\n*End\n", "Key"), range(0, 4))
            << '[' << end << ']';
    }
}

TEST(OrbPPDProcessorRange, AnUnterminatedValueIsNotFoundEvenWhenADuplicateFollows) {
    EXPECT_EQ(rangeIn("*Key: \"a\nb\nc\"\n", "Key"), kNotFound);
    EXPECT_EQ(rangeIn("*End\n*Key: \"a\n*Key: 1\n", "Key"), kNotFound);
}

TEST(OrbPPDProcessorRange, AQuoteCountsWhereverItStandsOnTheLine) {
    EXPECT_EQ(rangeIn("*Key Spec/5\" disk: 1\n*Two: 2\n*End\n", "Key", "Spec"), range(0, 3));
    EXPECT_EQ(rangeIn("*Key Spec/5\" disk: 1\n*Two: 2\n", "Key", "Spec"), kNotFound);
    EXPECT_EQ(rangeIn("*Key Spec/5\" disk: \"1\"\n*End\n", "Key", "Spec"), range(0, 1));
    EXPECT_EQ(rangeIn("*Ke\"y: 1\n*Two: 2\n*End\n", "Ke\"y"), range(0, 3));
}

TEST(OrbPPDProcessorRange, LinesInsideAQuotedValueAreSearchedToo) {
    EXPECT_EQ(rangeIn("*Key: \"a\n*Inner: 1\n\"\n*End\n", "Inner"), range(1, 1));
}

// Values

TEST(OrbPPDProcessorValue, AnAbsentOrUnterminatedAttributeHasNone) {
    EXPECT_EQ(valueIn("*Other: 12\n"), std::nullopt);
    EXPECT_EQ(valueIn("*Key Spec: 12\n"), std::nullopt);
    EXPECT_EQ(valueIn("*Key: 12\n", kNone), std::nullopt);
    EXPECT_EQ(valueIn("*Key: \"a\nb\"\n"), std::nullopt);
}

TEST(OrbPPDProcessorValue, AQuotedValueStandsBetweenTheFirstTwoQuotes) {
    struct {
        const char* content;
        const char* value;
    } const cases[] = {
        {"*Key: \"\"\n", ""},
        {"*Key: \"1\"\n", "1"},
        {"*Key: \" a b \"\n", " a b "},
        {"*Key:\"a\"\n", "a"},
        {"*Key: \"a\" rest\n", "a"},
        {"*Key: \"a\"b\"c\"\n", "a"},
        {"*Key: x\"a\"y\n", "a"},
        {"*Key: \"a:b/c\"\n", "a:b/c"},
        {"*Key: \"caf\xC3\xA9\"\r\n", "caf\xC3\xA9"},
    };
    for (const auto& [content, value] : cases) {
        EXPECT_EQ(valueIn(content), value) << content;
    }
}

TEST(OrbPPDProcessorValue, QuotesInATranslationTextCountToo) {
    EXPECT_EQ(valueIn("*Key Spec/a \"b\" c: \"d\"\n", "Key", "Spec"), "b");
}

TEST(OrbPPDProcessorValue, TheLinesOfAValueAreJoinedWithOneSpace) {
    EXPECT_EQ(valueIn("*Key: \"one\ntwo\n\nthree\"\n*End\n"), "one two  three");
    EXPECT_EQ(valueIn("*Key: \"\none\n\"\n*End\n"), " one ");
    EXPECT_EQ(valueIn("*Key: \"one\r\ntwo\"\n*End\n"), "one\r two");
}

TEST(OrbPPDProcessorValue, WhatFollowsTheClosingQuoteBeforeTheEndLineDoesNotCount) {
    EXPECT_EQ(valueIn("*Key: \"one\ntwo\" three \"four\nfive\n*Other: \"six\"\n*End\n"), "one two");
    EXPECT_EQ(valueIn("*Key: \"\n\"\n\"\n*End\n"), " ");
}

TEST(OrbPPDProcessorValue, AQuoteThatIsNotClosedBeforeTheEndLineGivesNone) {
    EXPECT_EQ(valueIn("*Key: \"one\ntwo\n*End\n*Other: \"x\"\n"), std::nullopt);
}

TEST(OrbPPDProcessorValue, AnUnquotedValueIsTheRestAfterColonAndSpaces) {
    struct {
        const char* content;
        const char* value;
    } const cases[] = {
        {"*Key: 12\n", "12"},     {"*Key:12\n", "12"},      {"*Key:    12\n", "12"},
        {"*Key: a b\n", "a b"},   {"*Key: 12  \n", "12  "},  // trailing spaces stay
        {"*Key: 12\r\n", "12\r"},                            // and so does a carriage return
        {"*Key: 1 \n", "1 "},                                // two characters
        {"*Key: 1\r\n", "1\r"},   {"*Key: \t1\n", "\t1"},    // only U+0020 is skipped
        {"*Key: a:b\n", "a:b"},   {"*Key::12\n", ":12"},
    };
    for (const auto& [content, value] : cases) {
        EXPECT_EQ(valueIn(content), value) << content;
    }
}

TEST(OrbPPDProcessorValue, AnUnquotedValueOfASingleCharacterAtTheEndOfTheLineIsNone) {
    for (const std::string line : {"*Key: 1", "*Key:1", "*Key:     x", "*Key: \r", "*Key:\t"}) {
        EXPECT_EQ(valueIn(line + "\n"), std::nullopt) << line;
    }
}

TEST(OrbPPDProcessorValue, ACharacterAtTheEndIsA16BitUnitOfTheText) {
    EXPECT_EQ(valueIn("*Key: \xC3\xA9\n"), std::nullopt);                // U+00E9: one unit
    EXPECT_EQ(valueIn("*Key: \xE2\x82\xAC\n"), std::nullopt);            // U+20AC: one unit
    EXPECT_EQ(valueIn("*Key: \xF0\x9F\x98\x80\n"), "\xF0\x9F\x98\x80");  // U+1F600: two units
    EXPECT_EQ(valueIn("*Key: \xC3\xA9\xC3\xA9\n"), "\xC3\xA9\xC3\xA9");
    EXPECT_EQ(valueIn("*Key: e\xCC\x81\n"), "e\xCC\x81");  // a letter and its combining accent
}

TEST(OrbPPDProcessorValue, CharactersBeforeTheColonDoNotChangeTheRuleForTheLastOne) {
    EXPECT_EQ(valueIn("*Key caf\xC3\xA9: 1\n", "Key", "caf\xC3\xA9"), std::nullopt);
    EXPECT_EQ(valueIn("*Key caf\xC3\xA9: 12\n", "Key", "caf\xC3\xA9"), "12");
    EXPECT_EQ(valueIn("*\xF0\x9F\x98\x80: 1\n", "\xF0\x9F\x98\x80"), std::nullopt);
    EXPECT_EQ(valueIn("*\xF0\x9F\x98\x80: 12\n", "\xF0\x9F\x98\x80"), "12");
    EXPECT_EQ(valueIn("*Key: \xE7\xB4\x99\n"), std::nullopt);
    EXPECT_EQ(valueIn("*Key: \xE7\xB4\x99\xE7\xB4\x99\n"), "\xE7\xB4\x99\xE7\xB4\x99");
}

TEST(OrbPPDProcessorValue, TheFirstColonOfTheLineCountsEvenInsideTheSpec) {
    EXPECT_EQ(valueIn("*Key a:b: 12\n", "Key", "a:b"), "b: 12");
    EXPECT_EQ(valueIn("*Key Spec/Text 1:2: 34\n", "Key", "Spec"), "2: 34");
}

TEST(OrbPPDProcessorValue, ALineThatMatchesByItsSlashAndHasNoColonHasNone) {
    EXPECT_EQ(valueIn("*Key Spec/Text\n", "Key", "Spec"), std::nullopt);
}

TEST(OrbPPDProcessorValue, ALineThatEndsAtItsColonOrWithSpacesAfterItIsAnOutOfRangeError) {
    for (const std::string line : {"*Key:", "*Key: ", "*Key:    "}) {
        EXPECT_THROW(valueIn(line + "\n"), std::out_of_range) << '[' << line << ']';
    }
    EXPECT_THROW(valueIn("*Key Spec/Text:\n", "Key", "Spec"), std::out_of_range);
}

TEST(OrbPPDProcessorValue, TheErrorNamesTheAttribute) {
    try {
        valueIn("*Key Spec/Text: \n", "Key", "Spec");
        FAIL() << "no error";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "nothing follows the colon of the attribute \"*Key Spec/Text\"");
    }
}

TEST(OrbPPDProcessorValue, ValuesThatAllGoOnToOneEndLineTakeLinearTime) {
    constexpr int kCount = 20000;
    std::string content;
    for (int i = 0; i < kCount; ++i) {
        content += "*K" + std::to_string(i) + ": \"a\nb\"\n";
    }
    const auto processor = processorOver(content + "*End\n");
    for (int i = 0; i < kCount; ++i) {
        ASSERT_EQ(processor->valueForAttributeWithKeyword_spec("K" + std::to_string(i), kNone),
                  "a b");
    }
}

TEST(OrbPPDProcessorValue, OnlyTheFirstOfSeveralAttributesIsRead) {
    EXPECT_EQ(valueIn("*Key: 1\n*Key: 23\n"), std::nullopt);
    EXPECT_EQ(valueIn("*Key: 23\n*Key:\n"), "23");
}

// Localizations

TEST(OrbPPDProcessorLocalizations, AreTheValueOfCupsLanguagesSplitAtEverySpace) {
    struct {
        const char* content;
        std::vector<std::string> codes;
    } const cases[] = {
        {"*cupsLanguages: \"de fr\"\n", {"de", "fr"}},
        {"*cupsLanguages: \"de\"\n", {"de"}},
        {"*cupsLanguages: de fr\n", {"de", "fr"}},
        {"*CUPSLanguages: \"de fr\"\n", {"de", "fr"}},
        {"*cupsLanguages: \"de  fr\"\n", {"de", "", "fr"}},
        {"*cupsLanguages: \" de \"\n", {"", "de", ""}},
        {"*cupsLanguages: \"de\tfr\"\n", {"de\tfr"}},
        {"*cupsLanguages: \"de fr\nit\"\n*End\n", {"de", "fr", "it"}},
        {"*cupsLanguages: \"en de en\"\n", {"en", "de", "en"}},
        {"*cupsLanguages: \"zh_TW pt_BR\"\n", {"zh_TW", "pt_BR"}},
        {"*cupsLanguages: \"\"\n", {""}},
    };
    for (const auto& [content, codes] : cases) {
        EXPECT_EQ(localizationsIn(content), codes) << content;
    }
}

TEST(OrbPPDProcessorLocalizations, WithoutAValueOfCupsLanguagesThereAreNone) {
    for (const std::string content : {"", "*Key: 12\n", "*cupsLanguages Spec: \"de\"\n",
                                      "*cupsLanguages: x\n", "*cupsLanguages: \"de\n"}) {
        EXPECT_TRUE(localizationsIn(content).empty()) << content;
    }
}

TEST(OrbPPDProcessorLocalizations, AreReadOnceAlsoWhenThereAreNone) {
    const auto processor = processorOver("*Key: 12\n");
    EXPECT_TRUE(processor->localizations().empty());
    insertAtEnd(*processor, "cupsLanguages", "\"de fr\"");
    EXPECT_TRUE(processor->localizations().empty());

    const auto other = processorOver("*cupsLanguages: \"de fr\"\n");
    EXPECT_EQ(other->localizations().size(), 2U);
    other->lines()->erase(0, 1);
    other->clearContent();
    EXPECT_EQ(other->localizations(), (std::vector<std::string>{"de", "fr"}));
}

TEST(OrbPPDProcessorLocalizations, CanBeOverridden) {
    const auto processor = processorOver("*cupsLanguages: \"de fr\"\n");
    processor->setLocalizations({"it"});
    EXPECT_EQ(processor->localizations(), std::vector<std::string>{"it"});
    processor->setLocalizations({});
    EXPECT_TRUE(processor->localizations().empty());
}

TEST(OrbPPDProcessorLocalizations, ALineThatEndsAtItsColonIsAnOutOfRangeErrorEveryTime) {
    const auto processor = processorOver("*cupsLanguages:\n");
    EXPECT_THROW(processor->localizations(), std::out_of_range);
    EXPECT_THROW(processor->localizations(), std::out_of_range);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
