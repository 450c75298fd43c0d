#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"
#include "updaters/default_choice/OrbPPDDefaultChoiceUpdater.h"

namespace TkPPDUpdating {
namespace {

using Testing::textOf;

PPDText edited(const PPDText& contents, std::string_view option, std::string_view choice) {
    return OrbPPDDefaultChoiceUpdater::updatedContentsForContents_optionWithName_defaultChoice(
        contents, option, choice);
}

struct Edit {
    const char* name;
    std::string before;
    std::string option;
    std::string choice;
    std::optional<std::string> after;
};

void PrintTo(const Edit& edit, std::ostream* stream) {
    *stream << edit.name;
}

std::string nameOfEdit(const testing::TestParamInfo<Edit>& info) {
    return info.param.name;
}

class DefaultChoiceEdit : public testing::TestWithParam<Edit> {};

TEST_P(DefaultChoiceEdit, GivesTheExpectedText) {
    const Edit& edit = GetParam();
    EXPECT_EQ(textOf(edited(makePPDText(edit.before), edit.option, edit.choice)), edit.after)
        << edit.before;
}

INSTANTIATE_TEST_SUITE_P(
    RewritesOnlyTheDefaultLine, DefaultChoiceEdit,
    testing::ValuesIn(std::vector<Edit>{
        {"WhenTheChoiceStandsBeforeIt",
         "*P\n*ZrPenConfig C1/One: \"\"\n*DefaultZrPenConfig: C2\n*E\n", "ZrPenConfig", "C1",
         "*P\n*ZrPenConfig C1/One: \"\"\n*DefaultZrPenConfig: C1\n*E\n"},
        {"WhenTheChoiceStandsBehindIt", "*P\n*DefaultZrPenConfig: C2\n*ZrPenConfig C1/One: \"\"\n",
         "ZrPenConfig", "C1", "*P\n*DefaultZrPenConfig: C1\n*ZrPenConfig C1/One: \"\"\n"},
        {"WhenTheNewChoiceIsLonger", "*P\n*DefaultO: X\n*O LongName/L: \"\"\n", "O", "LongName",
         "*P\n*DefaultO: LongName\n*O LongName/L: \"\"\n"},
        {"WhenTheNewChoiceIsShorter", "*P\n*DefaultO: LongName\n*O X/L: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\"\n"},
        {"WithoutExtraSpacesAndTrailingBlanks", "*P\n*DefaultO:   Y \t \n*O X/L: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\"\n"},
        {"WithoutAComment", "*P\n*DefaultO: Y % as delivered\n*O X/L: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\"\n"},
        {"WithoutATranslationOfTheOldValue", "*P\n*DefaultO: Y/Why\n*O X/L: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\"\n"},
        {"WithASpaceWhereThereWasNone", "*P\n*DefaultO:Y\n*O X/L: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\"\n"},
        {"WhereNothingFollowedTheColon", "*P\n*DefaultO:\n*O X/L: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\"\n"},
        {"WhenItOnlyLacksTheSpace", "*P\n*DefaultO:X\n*O X/L: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\"\n"},
        {"WhenItIsTheLastLineWithALineFeed", "*P\n*O X/L: \"\"\n*DefaultO: Y\n", "O", "X",
         "*P\n*O X/L: \"\"\n*DefaultO: X\n"},
        {"AndDropsItsCarriageReturn", "*P\r\n*DefaultO: Y\r\n*O X/L: \"\"\r\n", "O", "X",
         "*P\r\n*DefaultO: X\n*O X/L: \"\"\r\n"},
        {"TheFirstWhenThereAreSeveral",
         "*P\n*DefaultO: Y\n*O X/L: \"\"\n*DefaultO: Z\n*DefaultO: Y\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\"\n*DefaultO: Z\n*DefaultO: Y\n"},
        {"TheSecondWhenTheFirstStandsAtTheVeryStart", "*DefaultO: Y\n*O X/L: \"\"\n*DefaultO: Z\n",
         "O", "X", "*DefaultO: Y\n*O X/L: \"\"\n*DefaultO: X\n"},
        {"OfTheOptionOfThatWholeName", "*P\n*DefaultOther: Y\n*DefaultO: Y\n*O X/L: \"\"\n", "O",
         "X", "*P\n*DefaultOther: Y\n*DefaultO: X\n*O X/L: \"\"\n"},
        {"WhenTheTranslationIsEmpty", "*P\n*DefaultO: Y\n*O X/: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X/: \"\"\n"},
        {"WhenOneOfTwoLinesOfTheChoiceHasATranslation",
         "*P\n*DefaultO: Y\n*O X: \"\"\n*O X/L: \"\"\n", "O", "X",
         "*P\n*DefaultO: X\n*O X: \"\"\n*O X/L: \"\"\n"},
        {"WhenTheLastLineHasNoLineFeed", "*P\n*DefaultO: Y\n*O X/L: \"\"", "O", "X",
         "*P\n*DefaultO: X\n*O X/L: \"\""},
        {"OfAnOptionWithRareCharactersInItsName",
         "*P\n*DefaultOption10_Duplex.Unit+: Y\n*Option10_Duplex.Unit+ X%@/L: \"\"\n",
         "Option10_Duplex.Unit+", "X%@",
         "*P\n*DefaultOption10_Duplex.Unit+: X%@\n*Option10_Duplex.Unit+ X%@/L: \"\"\n"},
    }),
    nameOfEdit);

INSTANTIATE_TEST_SUITE_P(
    GivesNull, DefaultChoiceEdit,
    testing::ValuesIn(std::vector<Edit>{
        {"ForAChoiceThatIsNotThere", "*P\n*DefaultO: Y\n*O Y/L: \"\"\n", "O", "X", std::nullopt},
        {"ForAPageSizeWithoutATranslation",
         "*P\n*DefaultPageSize: A4\n*PageSize A4/A4: \"\"\n*PageSize Letter: \"\"\n", "PageSize",
         "Letter", std::nullopt},
        {"WhenTheChoiceIsOnlyThePrefixOfAnother", "*P\n*DefaultO: Y\n*O XY/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenTheChoiceIsOnlyTheSuffixOfAnother", "*P\n*DefaultO: Y\n*O YX/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenOptionAndChoiceAreTwoSpacesApart", "*P\n*DefaultO: Y\n*O  X/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenOptionAndChoiceAreATabApart", "*P\n*DefaultO: Y\n*O\tX/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenABlankStandsBeforeTheSlash", "*P\n*DefaultO: Y\n*O X /L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenTheChoiceLineIsIndented", "*P\n*DefaultO: Y\n *O X/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenTheChoiceLineIsTheVeryFirst", "*O X/L: \"\"\n*DefaultO: Y\n", "O", "X", std::nullopt},
        {"WhenTheCaseOfTheOptionDiffers", "*P\n*DefaultO: Y\n*o X/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenTheCaseOfTheChoiceDiffers", "*P\n*DefaultO: Y\n*O x/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenTheCaseOfTheDefaultLineDiffers", "*P\n*defaultO: Y\n*O X/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenOnlyATranslationLineHasTheChoice", "*P\n*DefaultO: Y\n*fr.O X/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WithoutADefaultLine", "*P\n*O X/L: \"\"\n", "O", "X", std::nullopt},
        {"WhenABlankStandsBeforeTheColonOfTheDefaultLine", "*P\n*DefaultO : Y\n*O X/L: \"\"\n", "O",
         "X", std::nullopt},
        {"WhenTheDefaultLineIsTheVeryFirst", "*DefaultO: Y\n*O X/L: \"\"\n", "O", "X",
         std::nullopt},
        {"WhenTheDefaultLineIsLastWithoutALineFeed", "*P\n*O X/L: \"\"\n*DefaultO: Y", "O", "X",
         std::nullopt},
        {"WhenTheDefaultLineIsLastWithoutALineFeedAndSaysSoAlready",
         "*P\n*O X/L: \"\"\n*DefaultO: X", "O", "X", std::nullopt},
        {"WhenTheTextEndsAtTheColonOfTheDefaultLine", "*P\n*O X/L: \"\"\n*DefaultO:", "O", "X",
         std::nullopt},
        {"ForAnEmptyText", "", "O", "X", std::nullopt},
        {"WhenLinesEndWithCarriageReturnsOnly", "*P\r*DefaultO: Y\r*O X/L: \"\"\r", "O", "X",
         std::nullopt},
    }),
    nameOfEdit);

TEST(DefaultChoiceEdit, OfNoTextIsNoText) {
    EXPECT_EQ(edited(nullptr, "O", "X"), nullptr);
}

TEST(DefaultChoiceEdit, LeavesTheGivenTextAsItWas) {
    const PPDText before = makePPDText("*P\n*DefaultO: Y\n*O X/L: \"\"\n");
    ASSERT_NE(edited(before, "O", "X"), nullptr);
    EXPECT_EQ(*before, "*P\n*DefaultO: Y\n*O X/L: \"\"\n");
}

TEST(DefaultChoiceEdit, GivesTheSameObjectWhenTheLineSaysSoAlready) {
    const PPDText before = makePPDText("*P\n*DefaultO: X\n*O X/L: \"\"\n");
    EXPECT_EQ(edited(before, "O", "X"), before);
}

TEST(DefaultChoiceEdit, OfItsOwnResultChangesNothing) {
    const PPDText once = edited(makePPDText("*P\n*DefaultO:Y %\n*O X/L: \"\"\n"), "O", "X");
    ASSERT_NE(once, nullptr);
    EXPECT_EQ(textOf(edited(once, "O", "X")), textOf(once));
}

TEST(DefaultChoiceEdit, KeepsBytesThatAreNotASCII) {
    EXPECT_EQ(
        textOf(edited(makePPDText("*P Größe\n*DefaultO: Y\n*O Ü/Übergröße: \"\"\n"), "O", "Ü")),
        "*P Größe\n*DefaultO: Ü\n*O Ü/Übergröße: \"\"\n");
}

PPDText changed(const PPDText& contents, const OrbPPDDefaultChoices& choices) {
    return OrbPPDDefaultChoiceUpdater::contentsForContents_byChangingDefaultChoices(contents,
                                                                                    choices);
}

const char* const kTwoOptions =
    "*P\n*DefaultA: Y\n*A X/L: \"\"\n*A Y/L: \"\"\n*DefaultB: Y\n*B X/L: \"\"\n*B Y/L: \"\"\n";

TEST(ChangingDefaultChoices, SetsEveryOptionOfTheMap) {
    EXPECT_EQ(
        textOf(changed(makePPDText(kTwoOptions), {{"A", "X"}, {"B", "X"}})),
        "*P\n*DefaultA: X\n*A X/L: \"\"\n*A Y/L: \"\"\n*DefaultB: X\n*B X/L: \"\"\n*B Y/L: \"\"\n");
}

TEST(ChangingDefaultChoices, SetsTheLaterOptionWhenTheEarlierSaysSoAlready) {
    EXPECT_EQ(
        textOf(changed(makePPDText(kTwoOptions), {{"A", "Y"}, {"B", "X"}})),
        "*P\n*DefaultA: Y\n*A X/L: \"\"\n*A Y/L: \"\"\n*DefaultB: X\n*B X/L: \"\"\n*B Y/L: \"\"\n");
}

TEST(ChangingDefaultChoices, GivesNullWhenTheSecondChoiceIsMissing) {
    EXPECT_EQ(changed(makePPDText(kTwoOptions), {{"A", "X"}, {"B", "Z"}}), nullptr);
}

TEST(ChangingDefaultChoices, GivesNullWhenTheFirstChoiceIsMissing) {
    EXPECT_EQ(changed(makePPDText(kTwoOptions), {{"A", "Z"}, {"B", "X"}}), nullptr);
}

TEST(ChangingDefaultChoices, GivesNullWhenAnOptionInTheMiddleIsMissing) {
    EXPECT_EQ(changed(makePPDText(kTwoOptions), {{"A", "X"}, {"AA", "X"}, {"B", "X"}}), nullptr);
}

TEST(ChangingDefaultChoices, GivesTheSameObjectForAnEmptyMap) {
    const PPDText before = makePPDText(kTwoOptions);
    EXPECT_EQ(changed(before, {}), before);
}

TEST(ChangingDefaultChoices, OfNoTextIsNoText) {
    EXPECT_EQ(changed(nullptr, {{"A", "X"}}), nullptr);
    EXPECT_EQ(changed(nullptr, {}), nullptr);
}

TEST(ChangingDefaultChoices, GivesTheSameTextInEveryOrderOfTheOptions) {
    std::vector<std::string> options = {"A", "B", "C"};
    const std::string before =
        "*P\n*DefaultC: Y\n*DefaultA: Y\n*DefaultB: Y\n*A X/L:\n*B X/L:\n*C X/L:\n";
    const std::string after =
        "*P\n*DefaultC: X\n*DefaultA: X\n*DefaultB: X\n*A X/L:\n*B X/L:\n*C X/L:\n";
    do {
        PPDText contents = makePPDText(before);
        for (const std::string& option : options) {
            contents = edited(contents, option, "X");
        }
        EXPECT_EQ(textOf(contents), after) << options[0] << options[1] << options[2];
    } while (std::next_permutation(options.begin(), options.end()));
}

TEST(ChangingDefaultChoices, SetsManyOptionsThatMakeTheTextGrow) {
    std::string before = "*P\n";
    std::string after = "*P\n";
    OrbPPDDefaultChoices choices;
    for (int number = 0; number < 100; ++number) {
        const std::string option = "Option" + std::to_string(number);
        const std::string lines = "\n*" + option + " MuchLongerThanBefore/L: \"\"\n";
        before.append("*Default").append(option).append(": A").append(lines);
        after.append("*Default").append(option).append(": MuchLongerThanBefore").append(lines);
        choices[option] = "MuchLongerThanBefore";
    }
    EXPECT_EQ(textOf(changed(makePPDText(before), choices)), after);
}

}  // namespace
}  // namespace TkPPDUpdating
