#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "ppd/OrbPPDProcessor.h"
#include "tests/ppd/ProcessorTesting.h"

namespace TkPPDUpdating::Testing {
namespace {

using Texts = std::vector<std::string>;
using MaybeText = std::optional<std::string_view>;
constexpr std::nullopt_t kNone = std::nullopt;
constexpr std::string_view kGlace = "Papier glac\xC3\xA9";

std::size_t deleteFrom(OrbPPDProcessor& processor, MaybeText keyword, MaybeText spec = kNone,
                       MaybeText value = kNone) {
    return processor.deleteAttributeWithKeyword_spec_value(keyword, spec, value);
}

/// The lines that an insertion of the attribute into an empty PPD with those localizations makes.
Texts insertedLines(Texts localizations, MaybeText spec, MaybeText text, MaybeText value) {
    const auto processor = processorOver("");
    processor->setLocalizations(std::move(localizations));
    EXPECT_TRUE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", spec, text, value, false));
    EXPECT_EQ(processor->insertLocation(), processor->lines()->size());
    return linesOf(*processor);
}

// Deleting

TEST(OrbPPDProcessorDelete, AnAbsentAttributeChangesNothing) {
    const PPDText text = makePPDText("*Key: 1\n*Key Spec: 2\n*Open: \"3\n");
    const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
    EXPECT_EQ(deleteFrom(*processor, "Other"), kTkPPDProcessorPPDEndLocation);
    EXPECT_EQ(deleteFrom(*processor, "Key", "Other"), kTkPPDProcessorPPDEndLocation);
    EXPECT_EQ(deleteFrom(*processor, "Key", kNone, "2"), kTkPPDProcessorPPDEndLocation);
    EXPECT_EQ(deleteFrom(*processor, "Open"), kTkPPDProcessorPPDEndLocation);
    EXPECT_EQ(deleteFrom(*processor, kNone), kTkPPDProcessorPPDEndLocation);
    EXPECT_EQ(processor->content(), text);
}

TEST(OrbPPDProcessorDelete, AnAbsentAttributeKeepsItsTranslations) {
    const PPDText text = makePPDText("*en.Key: \"\"\n");
    const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
    EXPECT_EQ(deleteFrom(*processor, "Key"), kTkPPDProcessorPPDEndLocation);
    EXPECT_EQ(processor->content(), text);
}

TEST(OrbPPDProcessorDelete, TranslationsOfAnOptionWithAColonGoAfterAnyNumberOfLookUps) {
    const auto processor = OrbPPDProcessor::processorWithPPDContent(
        makePPDText("*cupsLanguages: \"fr\"\n*Key a:b: 1\n*fr.Key a:b/T: \"\"\n*Key a: 2\n"));
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(processor->rangeOfAttributeWithKeyword_spec_value("Key", "a:c", std::nullopt),
                  kNotFound);
    }
    EXPECT_EQ(processor->deleteAttributeWithKeyword_spec_value("Key", "a:b", std::nullopt), 1U);
    EXPECT_EQ(*processor->content(), "*cupsLanguages: \"fr\"\n*Key a: 2\n");
}

/// A deletion from a PPD, the index that it gives, and the PPD after it.
struct Deletion {
    const char* name;
    const char* before;
    MaybeText keyword;
    MaybeText spec;
    MaybeText value;
    std::size_t index;
    const char* after;

    friend void PrintTo(const Deletion& deletion, std::ostream* stream) {
        *stream << deletion.name;
    }
};

class OrbPPDProcessorDeletion : public testing::TestWithParam<Deletion> {};

TEST_P(OrbPPDProcessorDeletion, GivesTheIndexAndTheExpectedText) {
    const Deletion& deletion = GetParam();
    const auto processor = processorOver(deletion.before);
    EXPECT_EQ(deleteFrom(*processor, deletion.keyword, deletion.spec, deletion.value),
              deletion.index);
    EXPECT_EQ(*processor->content(), deletion.after);
}

INSTANTIATE_TEST_SUITE_P(
    OrbPPDProcessorDelete, OrbPPDProcessorDeletion,
    testing::ValuesIn(std::vector<Deletion>{
        {"GivesTheIndexWhereTheAttributeStood", "*A: 1\n*B: 2\n*C: 3\n", "B", kNone, kNone, 1,
         "*A: 1\n*C: 3\n"},
        {"OnlyTheFirstMatchGoes", "*A: 1\n*A: 2\n*a: 2\n", "A", kNone, "2", 1, "*A: 1\n*a: 2\n"},
        {"AValueOfSeveralLinesGoesUpToItsEndLine", "*A: 1\n*B: \"x\ny\nz\"\n*End\n*C: 3\n", "B",
         kNone, kNone, 1, "*A: 1\n*C: 3\n"},
        {"TheTranslationsForEveryLanguageAndForEnglishGoWithIt",
         "*cupsLanguages: \"de fr\"\n*K S/T: 1\n*en.K S/T: \"\"\n*de.K S/T: \"\"\n"
         "*fr.K S/T: \"a\nb\"\n*End\n*it.K S/T: \"\"\n*de.K S2/T: \"\"\n*de.K: \"\"\n",
         "K", "S", kNone, 1,
         "*cupsLanguages: \"de fr\"\n*it.K S/T: \"\"\n*de.K S2/T: \"\"\n*de.K: \"\"\n"},
        {"TranslationsOfAnAttributeWithoutSpecHaveNoneEither",
         "*K: 1\n*en.K S/T: \"\"\n*en.K: \"\"\n", "K", kNone, kNone, 0, "*en.K S/T: \"\"\n"},
        {"TranslationsGoWhateverTheirValue", "*K S: 1\n*K S: 2\n*en.K S/T: x\n", "K", "S", "2", 1,
         "*K S: 1\n"},
        {"OnlyTheFirstTranslationOfALanguageGoes", "*K: 1\n*en.K: \"1\"\n*en.K: \"2\"\n", "K",
         kNone, kNone, 0, "*en.K: \"2\"\n"},
        {"EnglishCountsTwiceWhenThePPDListsIt",
         "*cupsLanguages: \"en\"\n*K: 1\n*en.K: \"1\"\n*en.K: \"2\"\n*en.K: \"3\"\n", "K", kNone,
         kNone, 1, "*cupsLanguages: \"en\"\n*en.K: \"3\"\n"},
        {"AnEmptyLanguageCodeStandsForAKeywordThatBeginsWithAFullStop",
         "*cupsLanguages: \"de  fr\"\n*K: 1\n*.K: \"\"\n*de.K: \"\"\n*fr.K: \"\"\n", "K", kNone,
         kNone, 1, "*cupsLanguages: \"de  fr\"\n"},
        {"AnUnterminatedTranslationStays", "*K: 1\n*en.K: \"open\n*L: 2\n", "K", kNone, kNone, 0,
         "*en.K: \"open\n*L: 2\n"},
        {"TheIndexIsNotCorrectedForTranslationsThatStoodBefore",
         "*en.K: \"\"\n*A: 1\n*K: 1\n*B: 2\n*C: 3\n", "K", kNone, kNone, 2,
         "*A: 1\n*B: 2\n*C: 3\n"},
    }),
    [](const auto& each) { return std::string(each.param.name); });

TEST(OrbPPDProcessorDelete, DeletingCupsLanguagesItselfLeavesOnlyEnglish) {
    const auto processor =
        processorOver("*cupsLanguages: \"de\"\n*de.cupsLanguages: \"\"\n*en.cupsLanguages: \"\"\n");
    EXPECT_EQ(deleteFrom(*processor, "cupsLanguages"), 0U);
    EXPECT_TRUE(processor->localizations().empty());
    EXPECT_EQ(*processor->content(), "*de.cupsLanguages: \"\"\n");
}

TEST(OrbPPDProcessorDelete, DeletingCupsLanguagesAfterTheyWereReadKeepsTheLanguages) {
    const auto processor =
        processorOver("*cupsLanguages: \"de\"\n*de.cupsLanguages: \"\"\n*en.cupsLanguages: \"\"\n");
    processor->localizations();
    EXPECT_EQ(deleteFrom(*processor, "cupsLanguages"), 0U);
    EXPECT_EQ(*processor->content(), "");
}

TEST(OrbPPDProcessorDelete, OnlyTheLanguagesThatWereSetLastCount) {
    const auto processor = processorOver(
        "*K: 1\n*de.K: \"\"\n*L: 1\n*de.L: \"\"\n*it.L: \"\"\n*M: 1\n*de.M: \"1\"\n*de.M: \"2\"\n");
    processor->setLocalizations({"de"});
    deleteFrom(*processor, "K");
    processor->setLocalizations({"it"});
    deleteFrom(*processor, "L");
    processor->setLocalizations({"a:b"});
    processor->setLocalizations({"de"});
    deleteFrom(*processor, "M");
    EXPECT_EQ(*processor->content(), "*de.L: \"\"\n*de.M: \"2\"\n");
}

TEST(OrbPPDProcessorDelete, ALanguageThatHoldsWhatEndsAKeywordCountsAtAnyPlace) {
    for (const Texts& languages :
         {Texts{"a:b"}, Texts{"a:b", "de"}, Texts{"de", "a:b"}, Texts{"fr", "a:b", "de"}}) {
        const auto processor = processorOver("*K: 1\n*a:b.K: \"\"\n*de.K: \"\"\n*L: 1\n");
        processor->setLocalizations(languages);
        deleteFrom(*processor, "K");
        const bool hasGerman = languages.size() > 1;
        EXPECT_EQ(*processor->content(), hasGerman ? "*L: 1\n" : "*de.K: \"\"\n*L: 1\n");
    }
}

TEST(OrbPPDProcessorDelete, ATranslationThatTookTheOthersAlongWasTheLast) {
    const auto processor = processorOver("*K: 1\n*de.K: \"a\n*de.K: \"b\"\n*End\n*L: 1\n");
    processor->setLocalizations({"de", "de"});
    EXPECT_EQ(deleteFrom(*processor, "K"), 0U);
    EXPECT_EQ(*processor->content(), "*L: 1\n");
}

TEST(OrbPPDProcessorDelete, TranslationsThatWereInsertedGoAlsoBehindAValueWithALineFeed) {
    const auto processor = processorOver("*M: 1\n");
    processor->setLocalizations({"de", "fr"});
    ASSERT_TRUE(insertAt(*processor, 0, "L", "\"a\nb\""));
    ASSERT_TRUE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", "S", kGlace, "V", false));
    ASSERT_EQ(processor->lines()->size(), 6U) << "the value with the line feed is one line";
    EXPECT_EQ(deleteFrom(*processor, "K", "S"), 1U);
    EXPECT_EQ(*processor->content(), "*L: \"a\nb\"\n*M: 1\n");
}

TEST(OrbPPDProcessorDelete, LanguagesThatCannotBeReadAreAnOutOfRangeError) {
    const auto processor = processorOver("*K: 1\n*cupsLanguages:\n");
    EXPECT_THROW(deleteFrom(*processor, "K"), std::out_of_range);
    EXPECT_EQ(deleteFrom(*processor, "Absent"), kTkPPDProcessorPPDEndLocation);
}

// Inserting

TEST(OrbPPDProcessorInsert, WithoutKeywordOrValueNothingChanges) {
    const PPDText text = makePPDText("*A: 1\n");
    const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
    EXPECT_FALSE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap(kNone, "S", "T", "V", true));
    EXPECT_FALSE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", "S", "T", kNone, true));
    EXPECT_EQ(processor->content(), text);
    EXPECT_EQ(processor->insertLocation(), 0U);
}

TEST(OrbPPDProcessorInsert, AtTheNotFoundIndexAppendsALine) {
    const auto processor = processorOver("*A: 1\n*B: 2\n*C: 3\n");
    EXPECT_TRUE(insertAtEnd(*processor, "Foo", "True"));
    EXPECT_EQ(processor->insertLocation(), 4U);
    EXPECT_EQ(linesOf(*processor), (Texts{"*A: 1", "*B: 2", "*C: 3", "*Foo: True"}));
}

TEST(OrbPPDProcessorInsert, AtTheIndexOfADeletedAttributeTakesItsPlace) {
    const auto processor = processorOver("*0: 0\n*1: 1\n*2: 2\n*3: 3\n*4: 4\n*K: old\n*6: 6\n");
    const std::size_t location = deleteFrom(*processor, "K");
    EXPECT_EQ(location, 5U);
    insertAt(*processor, location, "K", "new");
    EXPECT_EQ(*processor->content(), "*0: 0\n*1: 1\n*2: 2\n*3: 3\n*4: 4\n*K: new\n*6: 6\n");
}

TEST(OrbPPDProcessorInsert, StartsBeforeTheFirstLine) {
    const auto processor = processorOver("*A: 1\n");
    EXPECT_TRUE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", kNone, kNone, "1", false));
    EXPECT_EQ(*processor->content(), "*K: 1\n*A: 1\n");
}

TEST(OrbPPDProcessorInsert, ASequenceOfInsertsWritesInTheOrderOfTheCalls) {
    const auto processor = processorOver("*A: 1\n*B: 2\n");
    processor->setInsertLocation(1);
    for (const std::string_view keyword : {"One", "Two", "Three"}) {
        EXPECT_TRUE(processor->insertAttributeWithKeyword_spec_text_value_wrap(keyword, "S", kNone,
                                                                               "x", false));
    }
    EXPECT_EQ(*processor->content(), "*A: 1\n*One S: x\n*Two S: x\n*Three S: x\n*B: 2\n");
    EXPECT_EQ(processor->insertLocation(), 4U);
}

TEST(OrbPPDProcessorInsert, ASecondAttributeOfTheKeywordIsNotPrevented) {
    const auto processor = processorOver("*K: 1\n");
    insertAtEnd(*processor, "K", "1");
    EXPECT_EQ(*processor->content(), "*K: 1\n*K: 1\n");
}

TEST(OrbPPDProcessorInsert, WithoutSpecTheTextIsIgnored) {
    EXPECT_EQ(insertedLines({"fr"}, kNone, kNone, "V"), Texts{"*K: V"});
    EXPECT_EQ(insertedLines({"fr"}, kNone, "T", "V"), Texts{"*K: V"});
    EXPECT_EQ(insertedLines({"fr"}, kNone, kGlace, "V"), Texts{"*K: V"});
}

TEST(OrbPPDProcessorInsert, WithoutTextThereAreNoTranslations) {
    EXPECT_EQ(insertedLines({"fr", "de"}, "S", kNone, "V"), Texts{"*K S: V"});
}

TEST(OrbPPDProcessorInsert, AnASCIITextStandsInTheLineAndInTheTranslationsOfThePPD) {
    EXPECT_EQ(insertedLines({}, "S", "T", "V"), Texts{"*K S/T: V"});
    EXPECT_EQ(insertedLines({"fr", "de"}, "S", "T", "V"),
              (Texts{"*K S/T: V", "*fr.K S/T: \"\"", "*de.K S/T: \"\""}));
    EXPECT_EQ(insertedLines({"fr"}, "S", "", "V"), (Texts{"*K S/: V", "*fr.K S/: \"\""}));
}

TEST(OrbPPDProcessorInsert, ATextThatIsNotASCIIStandsInTheTranslationsOnlyEnglishFirst) {
    EXPECT_EQ(insertedLines({"fr"}, "Glossy", kGlace, "V"),
              (Texts{"*K Glossy: V", "*en.K Glossy/Papier glac\xC3\xA9: \"\"",
                     "*fr.K Glossy/Papier glac\xC3\xA9: \"\""}));
    EXPECT_EQ(insertedLines({}, "Glossy", kGlace, "V"),
              (Texts{"*K Glossy: V", "*en.K Glossy/Papier glac\xC3\xA9: \"\""}));
}

TEST(OrbPPDProcessorInsert, EnglishStandsTwiceWhenThePPDListsItAndTheTextIsNotASCII) {
    EXPECT_EQ(insertedLines({"en"}, "S", "\xC3\xA9", "V"),
              (Texts{"*K S: V", "*en.K S/\xC3\xA9: \"\"", "*en.K S/\xC3\xA9: \"\""}));
    EXPECT_EQ(insertedLines({"en"}, "S", "e", "V"), (Texts{"*K S/e: V", "*en.K S/e: \"\""}));
}

TEST(OrbPPDProcessorInsert, AnEmptyLanguageCodeGetsATranslationToo) {
    EXPECT_EQ(insertedLines({"de", "", "fr"}, "S", "T", "V"),
              (Texts{"*K S/T: V", "*de.K S/T: \"\"", "*.K S/T: \"\"", "*fr.K S/T: \"\""}));
}

TEST(OrbPPDProcessorInsert, TheLanguagesComeFromThePPD) {
    const auto processor = processorOver("*cupsLanguages: \"fr\"\n");
    EXPECT_TRUE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", "S", "T", "V", false));
    EXPECT_EQ(*processor->content(), "*K S/T: V\n*fr.K S/T: \"\"\n*cupsLanguages: \"fr\"\n");
    EXPECT_EQ(processor->insertLocation(), 2U);
}

TEST(OrbPPDProcessorInsert, ATextIsCutTo79BytesEverywhere) {
    const std::string hundred(100, 'x');
    const std::string cut(79, 'x');
    EXPECT_EQ(insertedLines({"fr"}, "S", hundred, "V"),
              (Texts{"*K S/" + cut + ": V", "*fr.K S/" + cut + ": \"\""}));
}

TEST(OrbPPDProcessorInsert, WhetherATextIsASCIIIsAskedOfTheCutText) {
    const std::string cut(79, 'x');
    EXPECT_EQ(insertedLines({}, "S", cut + "\xC3\xA9", "V"), Texts{"*K S/" + cut + ": V"});
}

TEST(OrbPPDProcessorInsert, ArgumentsAreTakenAsTheyStand) {
    EXPECT_EQ(insertedLines({"%@"}, "%@", "%@%@", "\"%@\""),
              (Texts{"*K %@/%@%@: \"%@\"", "*%@.K %@/%@%@: \"\""}));
    EXPECT_EQ(insertedLines({}, "", kNone, ""), Texts{"*K : "});
}

TEST(OrbPPDProcessorInsert, ALineOf255BytesIsInsertedUnwrapped) {
    for (const bool wrap : {false, true}) {
        const auto processor = processorOver("");
        const std::string value = "a " + std::string(255 - 6, 'v');
        ASSERT_EQ(("*K: " + value).size(), 255U);
        EXPECT_TRUE(processor->insertAttributeWithKeyword_spec_text_value_wrap("K", kNone, kNone,
                                                                               value, wrap));
        EXPECT_EQ(linesOf(*processor), Texts{"*K: " + value});
    }
}

TEST(OrbPPDProcessorInsert, ALineOf256BytesIsRefusedWithoutWrapping) {
    const PPDText text = makePPDText("*A: 1\n");
    const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
    processor->setLocalizations({"fr"});
    processor->setInsertLocation(1);
    const std::string value(256 - std::string("*K S/T: ").size(), 'v');
    EXPECT_FALSE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", "S", "T", value, false));
    EXPECT_EQ(processor->content(), text);
    EXPECT_EQ(linesOf(*processor), Texts{"*A: 1"});
    EXPECT_EQ(processor->insertLocation(), 1U);
}

TEST(OrbPPDProcessorInsert, TheLengthOfALineIsCountedInBytes) {
    std::string value;  // 126 letters of two bytes: 130 characters, 256 bytes with "*K: "
    for (int i = 0; i < 126; ++i) {
        value += "\xC3\xA9";
    }
    const auto processor = processorOver("");
    EXPECT_FALSE(insertAtEnd(*processor, "K", value));
    EXPECT_TRUE(insertAtEnd(*processor, "K", value.substr(2)));
}

TEST(OrbPPDProcessorInsert, ALineOf256BytesIsWrappedWhenAllowed) {
    const auto processor = processorOver("*A: 1\n*B: 2\n");
    processor->setInsertLocation(1);
    const std::string half(123, 'v');
    const std::string value = half + " " + half + " xy";
    ASSERT_EQ(("*K S/T: " + value).size(), 258U);
    processor->setLocalizations({"fr"});
    EXPECT_TRUE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", "S", "T", value, true));
    // "*K", "S/T:" and the first half take 131 bytes, both halves 255; "xy" no longer fits.
    EXPECT_EQ(linesOf(*processor), (Texts{"*A: 1", "*K S/T: " + half + " " + half, "xy", "*End",
                                          "*fr.K S/T: \"\"", "*B: 2"}));
    EXPECT_EQ(processor->insertLocation(), 5U);
}

TEST(OrbPPDProcessorInsert, ALineWithAWordThatCannotBeWrappedIsRefused) {
    const PPDText text = makePPDText("*A: 1\n");
    const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
    EXPECT_FALSE(processor->insertAttributeWithKeyword_spec_text_value_wrap(
        "K", kNone, kNone, std::string(256, 'v'), true));
    EXPECT_EQ(processor->content(), text);
    EXPECT_EQ(processor->insertLocation(), 0U);
}

TEST(OrbPPDProcessorInsert, TranslationLinesAreNeitherMeasuredNorWrapped) {
    const std::string spec(200, 's');
    const std::string text(40, 't');
    EXPECT_EQ(insertedLines({"language-of-a-long-name"}, spec, text, "V"),
              (Texts{"*K " + spec + "/" + text + ": V",
                     "*language-of-a-long-name.K " + spec + "/" + text + ": \"\""}));
}

TEST(OrbPPDProcessorInsert, AWrappedOpenQuoteIsFoundAgainWhole) {
    const auto processor = processorOver("*A: 1\n");
    std::string words = "first";
    for (int i = 0; i < 60; ++i) {
        words += " word";
    }
    EXPECT_TRUE(processor->insertAttributeWithKeyword_spec_text_value_wrap(
        "K", kNone, kNone, "\"" + words + "\"", true));
    EXPECT_EQ(processor->rangeOfAttributeWithKeyword_spec_value("K", kNone, kNone),
              (OrbPPDLineRange{0, 3}));
    EXPECT_EQ(processor->valueForAttributeWithKeyword_spec("K", kNone), words);
    EXPECT_EQ(deleteFrom(*processor, "K"), 0U);
    EXPECT_EQ(*processor->content(), "*A: 1\n");
}

TEST(OrbPPDProcessorInsert, BehindLinesThatWereRemovedIsAnOutOfRangeError) {
    const auto processor = processorOver("*A: 1\n*B: 2\n*C: 3\n");
    processor->setInsertLocation(3);
    deleteFrom(*processor, "C");
    EXPECT_THROW(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", kNone, kNone, "1", false),
        std::out_of_range);
    EXPECT_EQ(linesOf(*processor), (Texts{"*A: 1", "*B: 2"}));
    processor->setInsertLocation(processor->insertLocation());
    EXPECT_TRUE(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", kNone, kNone, "1", false));
}

TEST(OrbPPDProcessorInsert, LanguagesThatCannotBeReadAreAnOutOfRangeError) {
    const auto processor = processorOver("*cupsLanguages: \n");
    EXPECT_THROW(
        processor->insertAttributeWithKeyword_spec_text_value_wrap("K", "S", "T", "V", false),
        std::out_of_range);
    EXPECT_EQ(linesOf(*processor), Texts{"*cupsLanguages: "});
    EXPECT_TRUE(insertAtEnd(*processor, "K", "V"));  // asks for no languages
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
