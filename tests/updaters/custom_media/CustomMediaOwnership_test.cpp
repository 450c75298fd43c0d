#include "updaters/custom_media/CustomMediaOwnership.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "ppd/PPDStatements.h"

namespace TkPPDUpdating {
namespace {

using testing::Contains;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;
using Lines = std::vector<std::string>;

/// The block of two media types in its places, as a run writes it; each argument stands in for a
/// line of it.
struct Block {
    std::string choice = "*MediaType custom1/Glossy: \"<</MediaType(custom1)>>setpagedevice\"";
    std::string translation = "*fr.MediaType custom1/Brillant: \"\"";
    std::string qualifier = "*ZrICCProfileId2 q1/gloss: \"\"";
    std::string profile = "*cupsICCProfile ..q1/gloss: \"/profiles/gloss.icc\"";
    std::string properties =
        "*ZrChoiceProperties MediaType.custom1: "
        "\"MediaID=1201;ParentMediaID=3;ZrICCProfileId2=q1;\"";
    std::string category = "*ZrMediaTypeCategory custom/Custom: \"custom1 custom12\"";
    std::string end;

    std::string text() const {
        return "*cupsLanguages: \"de fr\"\n"
               "*OpenUI *MediaType/Media Type: PickOne\n"
               "*MediaType Plain/Plain: \"<</MediaType(Plain)>>setpagedevice\"\n" +
               choice + "\n" + translation + "\n*CloseUI: *MediaType\n" +
               "*OpenUI *ZrICCProfileId2/Profile: PickOne\n" + qualifier +
               "\n*CloseUI: *ZrICCProfileId2\n" + profile + "\n" + properties + "\n" + category +
               "\n" + end;
    }
    Lines lines() const { return {choice, translation, qualifier, profile, properties, category}; }
};

Lines linesThat(const std::function<bool(const PPDStatement&)>& may,
                const std::vector<PPDStatement>& statements) {
    Lines lines;
    for (const PPDStatement& each : statements) {
        if (may(each)) {
            lines.emplace_back(each.lines);
        }
    }
    return lines;
}

/// The lines of a text after a run that the run may have added.
Lines added(const std::string& text) {
    const auto statements = PPDStatementsOfText(text);
    return linesThat(ownedCustomMediaLines({}, statements).mayAdd, statements);
}

/// The lines of a text before a run that the run may take away.
Lines takenAway(const std::string& text) {
    const auto statements = PPDStatementsOfText(text);
    return linesThat(ownedCustomMediaLines(statements, {}).mayTakeAway, statements);
}

TEST(CustomMediaOwnership, OwnsTheDefaultsOfTheMediaTypeAndItsProfile) {
    EXPECT_EQ(ownedCustomMediaLines({}, {}).defaultsOfOptions,
              (Lines{"MediaType", "ZrICCProfileId2"}));
}

TEST(CustomMediaOwnership, TheBlockThatARunWritesMayBeAddedAndTakenAwayAndNothingElse) {
    EXPECT_THAT(added(Block().text()), ElementsAreArray(Block().lines()));
    EXPECT_THAT(takenAway(Block().text()), ElementsAreArray(Block().lines()));
}

TEST(CustomMediaOwnership, WithoutACategoryThereIsNoBlock) {
    Block block;
    block.category = "*ZrTail: \"end\"";
    EXPECT_THAT(added(block.text()), IsEmpty());
    EXPECT_THAT(takenAway(block.text()), IsEmpty());
    block.category = "*ZrMediaTypeCategory photo/Custom: \"custom1\"";
    EXPECT_THAT(added(block.text()), IsEmpty());
    EXPECT_THAT(takenAway(block.text()), IsEmpty());
    block.category = "*ZrMediaCategory custom/Custom: \"custom1\"";
    EXPECT_THAT(takenAway(block.text()), IsEmpty());
}

TEST(CustomMediaOwnership, WhatTheTextsHaveEachCountsForItself) {
    const std::string text = Block().text();
    const auto statements = PPDStatementsOfText(text);
    EXPECT_THAT(linesThat(ownedCustomMediaLines(statements, {}).mayAdd, statements),
                ElementsAreArray({Block().category}));
    EXPECT_THAT(linesThat(ownedCustomMediaLines({}, statements).mayTakeAway, statements),
                ElementsAreArray({Block().category}));
}

/// A block in which one line is not what a run writes.
struct Deviation {
    const char* name;
    std::string Block::*place;
    std::string line;
};

void PrintTo(const Deviation& deviation, std::ostream* out) {
    *out << deviation.line;
}

class CustomMediaDeviation : public testing::TestWithParam<Deviation> {};

TEST_P(CustomMediaDeviation, MayNotBeAdded) {
    Block block;
    block.*GetParam().place = GetParam().line;
    EXPECT_THAT(added(block.text()), Not(Contains(GetParam().line)));
}

std::string choiceNamed(const std::string& name) {
    return "*MediaType " + name + "/Text: \"<</MediaType(" + name + ")>>setpagedevice\"";
}

INSTANTIATE_TEST_SUITE_P(
    All, CustomMediaDeviation,
    testing::Values(
        Deviation{"OtherCode", &Block::choice,
                  "*MediaType custom1/Glossy: \"<</MediaType(custom1)>>setpagedevice showpage\""},
        Deviation{"CodeOfAnotherChoice", &Block::choice,
                  "*MediaType custom1/Glossy: \"<</MediaType(custom12)>>setpagedevice\""},
        Deviation{"CodeWithoutQuotes", &Block::choice,
                  "*MediaType custom1/Glossy: <</MediaType(custom1)>>setpagedevice"},
        Deviation{"ChoiceInAnotherOption", &Block::qualifier, choiceNamed("custom12")},
        Deviation{"ChoiceOutsideOfOptions", &Block::end, choiceNamed("custom12")},
        Deviation{"ChoiceThatTheCategoryDoesNotName", &Block::choice, choiceNamed("custom2")},
        Deviation{"TranslationWithCode", &Block::translation,
                  "*fr.MediaType custom1/Brillant: \"x\""},
        Deviation{"TranslationWithoutQuotes", &Block::translation,
                  "*fr.MediaType custom1/Brillant:"},
        Deviation{"TranslationIntoAnotherLanguage", &Block::translation,
                  "*it.MediaType custom1/Lucido: \"\""},
        Deviation{"TranslationOfAnotherChoice", &Block::translation,
                  "*fr.MediaType Plain/Ordinaire: \"\""},
        Deviation{"ProfileWithValue", &Block::qualifier, "*ZrICCProfileId2 q1/gloss: \"x\""},
        Deviation{"ProfileWithoutFile", &Block::qualifier, "*ZrICCProfileId2 q2/gloss: \"\""},
        Deviation{"ProfileOutsideOfItsOption", &Block::end, "*ZrICCProfileId2 q1/again: \"\""},
        Deviation{"ProfileInAnotherOption", &Block::choice, "*ZrICCProfileId2 q1/again: \"\""},
        Deviation{"RelativePath", &Block::profile, "*cupsICCProfile ..q1/gloss: \"gloss.icc\""},
        Deviation{"PathOverTwoLines", &Block::profile,
                  "*cupsICCProfile ..q1/gloss: \"/profiles\n/gloss.icc\""},
        Deviation{"NoPath", &Block::profile, "*cupsICCProfile ..q1/gloss: \"\""},
        Deviation{"FileOfAnotherQualifier", &Block::profile,
                  "*cupsICCProfile ..q2/gloss: \"/profiles/gloss.icc\""},
        Deviation{"FileWithoutEmptyQualifiers", &Block::profile,
                  "*cupsICCProfile q1/gloss: \"/profiles/gloss.icc\""},
        Deviation{"FileOfColorModel", &Block::profile,
                  "*cupsICCProfile RGB..q1/gloss: \"/profiles/gloss.icc\""},
        Deviation{"PropertiesWithText", &Block::properties,
                  "*ZrChoiceProperties MediaType.custom1/Text: \"MediaID=1;ParentMediaID=3;\""},
        Deviation{"PropertiesWithAnotherKey", &Block::properties,
                  "*ZrChoiceProperties MediaType.custom1: \"MediaID=1;Other=3;\""},
        Deviation{"PropertiesWrittenAnotherWay", &Block::properties,
                  "*ZrChoiceProperties MediaType.custom1: \"MediaID = 1;ParentMediaID=3;\""},
        Deviation{"PropertiesThatCannotBeRead", &Block::properties,
                  "*ZrChoiceProperties MediaType.custom1: \"MediaID\""},
        Deviation{"PropertiesOfAnotherOption", &Block::properties,
                  "*ZrChoiceProperties PageSize.custom1: \"MediaID=1;ParentMediaID=3;\""},
        Deviation{"PropertiesOfAnotherChoice", &Block::properties,
                  "*ZrChoiceProperties MediaType.custom2: \"MediaID=1;ParentMediaID=3;\""},
        Deviation{"CategoryWithAnotherText", &Block::category,
                  "*ZrMediaTypeCategory custom/Own: \"custom1\""},
        Deviation{"AnotherCategory", &Block::end, "*ZrMediaTypeCategory photo/Custom: \"custom1\""},
        Deviation{"AnotherKeyword", &Block::end, "*ZrTail custom/Custom: \"custom1\""}),
    [](const auto& deviation) { return deviation.param.name; });

TEST(CustomMediaOwnership, ACategoryMayGoOnOverLines) {
    Block block;
    block.category = "*ZrMediaTypeCategory custom/Custom: \"custom1\ncustom2\"";
    EXPECT_THAT(added(block.text()), Contains(block.category));
}

TEST(CustomMediaOwnership, OnlyNamesThatARunGivesMayBeAdded) {
    for (const char* name : {"custom1", "custom9", "custom10", "custom256"}) {
        Block block;
        block.choice = choiceNamed(name);
        block.category = std::string("*ZrMediaTypeCategory custom/Custom: \"") + name + "\"";
        EXPECT_THAT(added(block.text()), Contains(block.choice));
    }
    for (const char* name : {"custom", "custom0", "custom01", "custom1a", "custom1:", "custom-1",
                             "Custom1", "photo"}) {
        Block block;
        block.choice = choiceNamed(name);
        block.category = std::string("*ZrMediaTypeCategory custom/Custom: \"") + name + "\"";
        EXPECT_THAT(added(block.text()), Not(Contains(block.choice))) << name;
    }
}

TEST(CustomMediaOwnership, EachPropertyOfARunMayStandAlone) {
    for (const char* value : {"MediaID=1;", "ParentMediaID=3;", "ZrICCProfileId2=q1;"}) {
        Block block;
        block.properties = std::string("*ZrChoiceProperties MediaType.custom1: \"") + value + "\"";
        EXPECT_THAT(added(block.text()), Contains(block.properties));
    }
}

TEST(CustomMediaOwnership, EnglishTranslationsBelongToEveryBlock) {
    Block block;
    block.translation = "*en.MediaType custom1/Gl\u00E4nzend: \"\"";
    EXPECT_THAT(added(block.text()), Contains(block.translation));
    EXPECT_THAT(takenAway(block.text()), Contains(block.translation));
    block.translation = "*de.MediaType custom1/Gl\u00E4nzend: \"\"";
    EXPECT_THAT(added(block.text()), Contains(block.translation));
}

TEST(CustomMediaOwnership, WhatACategoryNamesMayBeTakenAwayWhateverItsNameAndValue) {
    Block block;
    block.choice = "*MediaType photo/Photo: \"anything\"";
    block.properties = "*ZrChoiceProperties MediaType.photo: \"ZrICCProfileId2=q1;Other=2;\"";
    block.category = "*ZrMediaTypeCategory custom/Own: \"photo\tcustom1\u00A0 \"";
    block.end = choiceNamed("custom1") + "\n";
    EXPECT_THAT(takenAway(block.text()),
                ElementsAreArray({block.choice, block.translation, block.qualifier, block.profile,
                                  block.properties, block.category, choiceNamed("custom1")}));
}

TEST(CustomMediaOwnership, OnlyTheFirstCategoryNamesChoices) {
    Block block;
    block.category = "*ZrMediaTypeCategory custom/Custom: \"custom12\"";
    block.end = "*ZrMediaTypeCategory custom/Custom: \"custom1\"\n";
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.choice)));
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.profile)));
}

TEST(CustomMediaOwnership, AProfileGoesWithThePropertiesOfAChoiceOnly) {
    Block block;
    block.properties = "*ZrChoiceProperties MediaType.Plain: \"ZrICCProfileId2=q1;\"";
    EXPECT_THAT(takenAway(block.text()),
                ElementsAreArray({block.choice, block.translation, block.category}));
    block.properties = "*ZrChoiceProperties PageSize.custom1: \"ZrICCProfileId2=q1;\"";
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.qualifier)));
    block.properties = "*ZrOther MediaType.custom1: \"ZrICCProfileId2=q1;\"";
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.qualifier)));
}

TEST(CustomMediaOwnership, AQualifierThatIsEmptyNamesNothing) {
    Block block;
    block.qualifier = "*ZrICCProfileId2 /gloss: \"\"";
    block.profile = "*cupsICCProfile ../gloss: \"/profiles/gloss.icc\"";
    block.properties = "*ZrChoiceProperties MediaType.custom1: \"ZrICCProfileId2=\"\";\"";
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.profile)));
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.qualifier)));
    block.properties = "*ZrChoiceProperties MediaType.custom1: \"MediaID=1;\"";
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.profile)));
}

TEST(CustomMediaOwnership, OnlyTheLanguagesOfThePPDMakeTranslations) {
    Block block;
    block.translation = "*it.MediaType custom1/Lucido: \"\"";
    block.end = "*ZrTail: \"it\"\n";
    EXPECT_THAT(added(block.text()), Not(Contains(block.translation)));
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.translation)));
}

TEST(CustomMediaOwnership, OnlyALineOfAProfileNamesItsQualifier) {
    Block block;
    block.profile = "*ZrProfile ..q1/gloss: \"/profiles/gloss.icc\"";
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.qualifier)));
    block.profile = "*cupsICCProfile RGB..q1/gloss: \"/profiles/gloss.icc\"";
    block.qualifier = "*ZrICCProfileId2 x/gloss: \"\"";
    block.properties = "*ZrChoiceProperties MediaType.custom1: \"ZrICCProfileId2=x;\"";
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.qualifier)));
}

TEST(CustomMediaOwnership, AnEmptyNameInACategoryNamesNothing) {
    Block block;
    block.choice = "*MediaType /Nameless: \"\"";
    block.category = "*ZrMediaTypeCategory custom/Custom: \"custom12  custom2\"";
    EXPECT_THAT(takenAway(block.text()), Not(Contains(block.choice)));
}

}  // namespace
}  // namespace TkPPDUpdating
