#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/updaters/custom_media/CustomMediaTestSupport.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

namespace TkPPDUpdating {
namespace {

using namespace Testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The text after `deleteCustomInfo`, whose effect every run begins with.
std::string removed(const std::string& text) {
    return updatedText(text, {});
}

class CustomMediaRemoval : public CustomMediaTest {
  protected:
    void start(const std::string& text) {
        updater.setPPDProcessor(OrbPPDProcessor::processorWithPPDContent(makePPDText(text)));
    }
    std::string content() { return *updater.PPDProcessor()->content(); }

    OrbPPDCustomMediaUpdater updater;
};

const OrbCustomMediaTypes& twoTypes() {
    static const OrbCustomMediaTypes types = {
        mediaType("Glossy", "1", "2", profile("file:///p/gloss.icc", "q1")),
        mediaType("Papier glacé", "3", "4", profile("file:///p/glac%C3%A9.icc", "q2"))};
    return types;
}

TEST_F(CustomMediaRemoval, ATextWithoutCategoryLineStaysAsItIs) {
    const std::string text = PPDWith(choiceLines("custom1", "Not ours"), "",
                                     "*ZrChoiceProperties MediaType.custom1: \"MediaID=1;\"\n"
                                     "*ZrMediaTypeCategory photo/Photo: \"custom1\"\n"
                                     "*ZrMediaTypeCategory: \"custom1\"\n");
    EXPECT_EQ(removed(text), text);
}

TEST_F(CustomMediaRemoval, NothingOfABlockRemains) {
    const std::string text = updatedText(PPDWith(), twoTypes());
    EXPECT_THAT(text, HasSubstr("custom2"));
    EXPECT_EQ(removed(text), PPDWith());
}

TEST_F(CustomMediaRemoval, TheTranslationLinesOfEveryLanguageGo) {
    std::string start = PPDWith();
    start.replace(start.find("\"fr\""), 4, "\"fr de en ja\"");
    const std::string text = updatedText(start, twoTypes());
    for (const std::string language : {"fr", "de", "en", "ja"}) {
        EXPECT_THAT(text, HasSubstr("*" + language + ".MediaType custom1/"));
    }
    EXPECT_EQ(removed(text), start);
}

TEST_F(CustomMediaRemoval, TranslationsIntoALanguageThatThePPDDoesNotListStay) {
    const std::string foreign = "*xx.MediaType custom1/Brillant: \"\"\n";
    EXPECT_EQ(
        removed(PPDWith(choiceLines("custom1", "Glossy") + foreign, "", categoryLines("custom1"))),
        PPDWith(foreign));
}

TEST_F(CustomMediaRemoval, OnlyTheNamesOnTheCategoryLineCount) {
    // A choice of another name is removed when the line names it; "custom9" stays, since it does
    // not.
    EXPECT_EQ(removed(PPDWith(choiceLines("Velvet", "Velvet") + choiceLines("custom9", "Nine"), "",
                              "*ZrChoiceProperties MediaType.Velvet: \"MediaID=1;\"\n"
                              "*ZrChoiceProperties MediaType.custom9: \"MediaID=9;\"\n" +
                                  categoryLines("Velvet"))),
              PPDWith(choiceLines("custom9", "Nine"), "",
                      "*ZrChoiceProperties MediaType.custom9: \"MediaID=9;\"\n"));
}

TEST_F(CustomMediaRemoval, ANameDoesNotReachALongerOne) {
    EXPECT_EQ(removed(PPDWith(choiceLines("custom10", "Ten"), "", categoryLines("custom1"))),
              PPDWith(choiceLines("custom10", "Ten")));
}

TEST_F(CustomMediaRemoval, TwoBlanksBetweenNamesMakeAnEmptyNameThatRemovesNothing) {
    EXPECT_EQ(removed(PPDWith(choiceLines("custom1", "A") + choiceLines("custom2", "B"), "",
                              categoryLines("custom1  custom2"))),
              PPDWith());
}

TEST_F(CustomMediaRemoval, AnEmptyNameReachesAnAttributeWithAnEmptySpec) {
    EXPECT_EQ(removed(PPDWith("*MediaType /Nameless: \"\"\n", "", categoryLines(""))), PPDWith());
}

TEST_F(CustomMediaRemoval, NamesAreSeparatedByEveryWhiteSpace) {
    EXPECT_EQ(removed(PPDWith(choiceLines("custom1", "A") + choiceLines("custom2", "B") +
                                  choiceLines("custom3", "C") + choiceLines("custom4", "D"),
                              "", categoryLines(" custom1\tcustom2\u00A0custom3\u3000custom4 "))),
              PPDWith());
}

TEST_F(CustomMediaRemoval, AWrappedCategoryLineIsRemovedWhole) {
    OrbCustomMediaTypes types;
    for (int i = 0; i < 60; ++i) {
        types.push_back(mediaType("Type " + std::to_string(i)));
    }
    const std::string text = updatedText(PPDWith(), types);
    EXPECT_THAT(text, HasSubstr("\n*End\n"));
    EXPECT_EQ(removed(text), PPDWith());
}

TEST_F(CustomMediaRemoval, ACategoryLineWithoutChoicesIsRemovedAllTheSame) {
    EXPECT_EQ(removed(PPDWith("", "", categoryLines("custom1 custom2"))), PPDWith());
}

TEST_F(CustomMediaRemoval, OnlyTheFirstOfTwoCategoryLinesIsRemoved) {
    EXPECT_EQ(removed(PPDWith(choiceLines("custom1", "A") + choiceLines("custom2", "B"), "",
                              categoryLines("custom1") + categoryLines("custom2"))),
              PPDWith(choiceLines("custom2", "B"), "", categoryLines("custom2")));
}

TEST_F(CustomMediaRemoval, AChoiceWithoutProfileLeavesTheProfilesOfOthers) {
    const std::string profiles =
        "*cupsICCProfile ..q1/gloss: \"/p/gloss.icc\"\n*fr.cupsICCProfile ..q1/gloss: \"\"\n";
    const std::string choices =
        "*ZrICCProfileId2 q1/gloss: \"\"\n*fr.ZrICCProfileId2 q1/gloss: \"\"\n";
    EXPECT_EQ(removed(PPDWith(choiceLines("custom1", "A"), choices,
                              profiles +
                                  "*ZrChoiceProperties MediaType.custom1: "
                                  "\"MediaID=1;ParentMediaID=2;\"\n" +
                                  categoryLines("custom1"))),
              PPDWith("", choices, profiles));
}

TEST_F(CustomMediaRemoval, AProfileListedTwiceIsRemovedTwiceAndNotOnceMore) {
    const std::string profile = "*cupsICCProfile ..q1/gloss: \"/p/gloss.icc\"\n";
    const std::string choice = "*ZrICCProfileId2 q1/gloss: \"\"\n";
    const std::string properties =
        "*ZrChoiceProperties MediaType.custom1: \"ZrICCProfileId2=q1;\"\n"
        "*ZrChoiceProperties MediaType.custom2: \"ZrICCProfileId2=q1;\"\n";
    EXPECT_EQ(removed(PPDWith(
                  "", choice + choice + choice,
                  profile + profile + profile + properties + categoryLines("custom1 custom2"))),
              PPDWith("", choice, profile));
}

TEST_F(CustomMediaRemoval, ANameListedTwiceRemovesTwoChoicesAndTheirProfileTwice) {
    // The qualifiers are collected first, twice from the same line.
    const std::string profile = "*cupsICCProfile ..q1/gloss: \"/p/gloss.icc\"\n";
    EXPECT_EQ(removed(PPDWith(choiceLines("custom1", "A") + choiceLines("custom1", "B"), "",
                              profile + profile +
                                  "*ZrChoiceProperties MediaType.custom1: "
                                  "\"ZrICCProfileId2=q1;\"\n" +
                                  categoryLines("custom1 custom1"))),
              PPDWith());
}

struct DamagedLines {
    const char* what;
    const char* lines;
    const char* left;
    bool areChoicesRemoved;
};

constexpr DamagedLines kDamagedCategoryLines[] = {
    {"no closing quote, no *End", "*ZrMediaTypeCategory custom/Custom: \"custom1 custom2\n",
     "*ZrMediaTypeCategory custom/Custom: \"custom1 custom2\n", false},
    {"no closing quote before *End",
     "*ZrMediaTypeCategory custom/Custom: \"custom1 custom2\n*End\n",
     "*ZrMediaTypeCategory custom/Custom: \"custom1 custom2\n*End\n", false},
    {"wrapped, *End lost", "*ZrMediaTypeCategory custom/Custom: \"custom1\ncustom2\"\n",
     "*ZrMediaTypeCategory custom/Custom: \"custom1\ncustom2\"\n", false},
    {"wrapped, a blank behind *End",
     "*ZrMediaTypeCategory custom/Custom: \"custom1\ncustom2\"\n*End \n",
     "*ZrMediaTypeCategory custom/Custom: \"custom1\ncustom2\"\n*End \n", false},
    {"wrapped, a carriage return behind *End",
     "*ZrMediaTypeCategory custom/Custom: \"custom1\ncustom2\"\n*End\r\n",
     "*ZrMediaTypeCategory custom/Custom: \"custom1\ncustom2\"\n*End\r\n", false},
    {"wrapped within a name",
     "*ZrMediaTypeCategory custom/Custom: \"custom1 cus\ntom2 custom2\"\n*End\n", "", true},
    {"no quotes", "*ZrMediaTypeCategory custom/Custom: custom1 custom2\n", "", true},
    {"no translation text", "*ZrMediaTypeCategory custom: \"custom1 custom2\"\n", "", true},
    {"other case", "*zrmediatypecategory CUSTOM/x: \"custom1 custom2\"\n", "", true},
    {"names in other case", "*ZrMediaTypeCategory custom/Custom: \"CUSTOM1 Custom2\"\n", "", true},
    {"no blank before the value", "*ZrMediaTypeCategory custom/Custom:\"custom1 custom2\"\n", "",
     true},
    {"separated by something else", "*ZrMediaTypeCategory custom/Custom: \"custom1,custom2\"\n", "",
     false},
    {"a quote in the text", "*ZrMediaTypeCategory custom/Cus\"tom: \"custom1 custom2\"\n", "",
     false},
    {"a tab before the spec", "*ZrMediaTypeCategory\tcustom/Custom: \"custom1 custom2\"\n",
     "*ZrMediaTypeCategory\tcustom/Custom: \"custom1 custom2\"\n", false},
    {"a blank behind the spec", "*ZrMediaTypeCategory custom : \"custom1 custom2\"\n",
     "*ZrMediaTypeCategory custom : \"custom1 custom2\"\n", false},
    {"a blank before the asterisk", " *ZrMediaTypeCategory custom: \"custom1 custom2\"\n",
     " *ZrMediaTypeCategory custom: \"custom1 custom2\"\n", false},
    {"no colon", "*ZrMediaTypeCategory custom \"custom1 custom2\"\n",
     "*ZrMediaTypeCategory custom \"custom1 custom2\"\n", false},
    {"a slash, but no colon", "*ZrMediaTypeCategory custom/Custom \"custom1 custom2\"\n", "", true},
    {"an unquoted name of one letter", "*ZrMediaTypeCategory custom/Custom: c\n",
     "*ZrMediaTypeCategory custom/Custom: c\n", false},
    {"a carriage return at the end", "*ZrMediaTypeCategory custom/Custom: \"custom1 custom2\"\r\n",
     "", true},
    {"text behind the value", "*ZrMediaTypeCategory custom/Custom: \"custom1 custom2\" x\n", "",
     true},
};

TEST_F(CustomMediaRemoval, DamagedCategoryLines) {
    const std::string choices = choiceLines("custom1", "A") + choiceLines("custom2", "B");
    for (const DamagedLines& each : kDamagedCategoryLines) {
        EXPECT_EQ(removed(PPDWith(choices, "", each.lines)),
                  PPDWith(each.areChoicesRemoved ? choices.substr(0, 0) : choices, "", each.left))
            << each.what;
    }
}

TEST_F(CustomMediaRemoval, AnUnquotedCategoryWithoutAValueIsOutOfRangeLikeAnyLookUp) {
    EXPECT_THROW(removed(PPDWith("", "", "*ZrMediaTypeCategory custom:\n")), std::out_of_range);
    EXPECT_THROW(removed(PPDWith("", "", "*ZrMediaTypeCategory custom/Custom:  \n")),
                 std::out_of_range);
}

TEST_F(CustomMediaRemoval, DamagedPropertiesLeaveTheProfileLines) {
    const std::string profile = "*cupsICCProfile ..q1/gloss: \"/p/gloss.icc\"\n";
    const std::string choice = "*ZrICCProfileId2 q1/gloss: \"\"\n";
    for (const std::string value :
         {"\"ZrICCProfileId2=q1\"", "\"MediaID=1;ZrICCProfileId2\"", "\"\"",
          "\"zrICCProfileId2=q1;\"", "\"ZrICCProfileId2=q1;x\""}) {
        EXPECT_EQ(removed(PPDWith(choiceLines("custom1", "A"), choice,
                                  profile + "*ZrChoiceProperties MediaType.custom1: " + value +
                                      "\n" + categoryLines("custom1"))),
                  PPDWith("", choice, profile))
            << value;
    }
}

TEST_F(CustomMediaRemoval, QualifiersComeInOrderAndTwiceWhenShared) {
    start(PPDWith("", "",
                  "*ZrChoiceProperties MediaType.a: \"MediaID=1;ZrICCProfileId2=q2;\"\n"
                  "*ZrChoiceProperties MediaType.b: \"MediaID=1;\"\n"
                  "*ZrChoiceProperties MediaType.c: \"ZrICCProfileId2=q1;\"\n"
                  "*ZrChoiceProperties MediaType.d: \"ZrICCProfileId2=q2;\"\n"
                  "*ZrChoiceProperties MediaType.e: \"ZrICCProfileId2=;\"\n"
                  "*ZrChoiceProperties MediaType.f: \"ZrICCProfileId2=q3\"\n"));
    EXPECT_THAT(updater.customICCProfilesForCustomMediaTypes({"a", "b", "c", "d", "e", "f", "g"}),
                ElementsAre("q2", "q1", "q2", ""));
    EXPECT_THAT(updater.customICCProfilesForCustomMediaTypes({}), IsEmpty());
}

TEST_F(CustomMediaRemoval, MediaTypesGoWithTheirPropertiesOnly) {
    start(PPDWith(choiceLines("custom1", "A") + choiceLines("custom2", "B"), "",
                  "*ZrChoiceProperties MediaType.custom1: \"MediaID=1;\"\n"
                  "*ZrChoiceProperties MediaType.custom2: \"MediaID=2;\"\n"
                  "*ZrChoiceProperties InputSlot.custom1: \"MediaID=3;\"\n"));
    updater.deleteMediaTypesAndChoicePropertiesForMediaTypes({"custom1", "absent"});
    EXPECT_EQ(content(), PPDWith(choiceLines("custom2", "B"), "",
                                 "*ZrChoiceProperties MediaType.custom2: \"MediaID=2;\"\n"
                                 "*ZrChoiceProperties InputSlot.custom1: \"MediaID=3;\"\n"));
}

TEST_F(CustomMediaRemoval, ProfilesGoFromBothPlaces) {
    start(PPDWith("", "*ZrICCProfileId2 q1/a: \"\"\n*ZrICCProfileId2 q2/b: \"\"\n",
                  "*cupsICCProfile ..q1/a: \"/a\"\n*cupsICCProfile ..q2/b: \"/b\"\n"
                  "*cupsICCProfile RGB..q1/c: \"/c\"\n"));
    updater.deleteICCProfilesAndColorSyncProfiles({"q1", "absent"});
    EXPECT_EQ(content(), PPDWith("", "*ZrICCProfileId2 q2/b: \"\"\n",
                                 "*cupsICCProfile ..q2/b: \"/b\"\n*cupsICCProfile RGB..q1/c: "
                                 "\"/c\"\n"));
}

TEST_F(CustomMediaRemoval, TheProfileFilesStay) {
    const std::string file = std::string(TKPPDUPDATING_SOURCE_DIR) + "/CMakeLists.txt";
    const std::string text =
        updatedText(PPDWith(), {mediaType("A", "1", "2", profile("file://" + file, "q1"))});
    EXPECT_EQ(removed(text), PPDWith());
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(CustomMediaRemoval, CarriageReturnsOfOtherLinesStay) {
    std::string text;
    for (const char character : PPDWith()) {
        text += character == '\n' ? "\r\n" : std::string(1, character);
    }
    EXPECT_EQ(removed(updatedText(text, twoTypes())), text);
}

}  // namespace
}  // namespace TkPPDUpdating
