#include "updaters/default_choice/OrbPPDDefaultChoiceUpdater.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/FakeCore.h"
#include "tests/support/InvalidOperation.h"
#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"

namespace TkPPDUpdating {
namespace {

using Testing::messageOfInvalidOperation;
using Testing::OneOptionPPDFile;
using Testing::parsedPPD;
using Testing::textOf;

/// An updater for options and device answers that the test gives.
class TestUpdater : public OrbPPDDefaultChoiceUpdater {
  public:
    TestUpdater(std::vector<std::string> names, std::optional<OrbPPDDefaultChoices> choices)
        : names_(std::move(names)), choices_(std::move(choices)) {}

    std::vector<std::string> optionNames() override {
        ++timesAskedForNames;
        return names_;
    }
    std::optional<OrbPPDDefaultChoices> defaultChoicesFromDeviceWithURI_context(
        std::optional<std::string_view> deviceURI, OrbDictionary* context) override {
        askedURI = deviceURI ? std::optional<std::string>(*deviceURI) : std::nullopt;
        askedContext = context;
        return choices_;
    }

    int timesAskedForNames = 0;
    std::optional<std::string> askedURI;
    OrbDictionary* askedContext = nullptr;

  private:
    std::vector<std::string> names_;
    std::optional<OrbPPDDefaultChoices> choices_;
};

std::string option(const std::string& name, const std::string& defaultLine) {
    return "*OpenUI *" + name + "/N: PickOne\n" + defaultLine + "*" + name + " X/Ex: \"\"\n*" +
           name + " Y/Why: \"\"\n*CloseUI: *" + name + "\n";
}

std::string options(const std::string& defaultOfA, const std::string& defaultOfB) {
    return option("A", "*DefaultA: " + defaultOfA + "\n") +
           option("B", "*DefaultB: " + defaultOfB + "\n");
}

TEST(OrbPPDDefaultChoiceUpdater, RaisesWhenASubclassDoesNotNameItsOptions) {
    OrbPPDDefaultChoiceUpdater updater;
    EXPECT_EQ(messageOfInvalidOperation([&] { updater.optionNames(); }),
              "OrbPPDDefaultChoiceUpdater does not implement optionNames");
}

TEST(OrbPPDDefaultChoiceUpdater, RaisesWhenASubclassDoesNotAskTheDevice) {
    OrbPPDDefaultChoiceUpdater updater;
    const std::string expected =
        "OrbPPDDefaultChoiceUpdater does not implement defaultChoicesFromDeviceWithURI_context";
    EXPECT_EQ(messageOfInvalidOperation(
                  [&] { updater.defaultChoicesFromDeviceWithURI_context("ipp://p", nullptr); }),
              expected);
    EXPECT_EQ(messageOfInvalidOperation([&] {
                  updater.updatedPPDContentsForContents_deviceURI_context(makePPDText(""),
                                                                          "ipp://p", nullptr);
              }),
              expected);
    EXPECT_EQ(messageOfInvalidOperation([&] {
                  updater.PPDUpdatingValuesForPPDFile_deviceURI_context(nullptr, "ipp://p",
                                                                        nullptr);
              }),
              expected);
}

TEST(DefaultChoiceApplicability, HoldsWhenTheFirstOptionExists) {
    const auto file = parsedPPD(option("A", ""));
    EXPECT_TRUE(TestUpdater({"A", "B"}, {}).isApplicableForPPDFile(file.get()));
}

TEST(DefaultChoiceApplicability, HoldsWhenOnlyTheLastOptionExists) {
    const auto file = parsedPPD(option("B", ""));
    EXPECT_TRUE(TestUpdater({"A", "B"}, {}).isApplicableForPPDFile(file.get()));
}

TEST(DefaultChoiceApplicability, FailsWhenNoOptionExists) {
    const auto file = parsedPPD(option("C", ""));
    EXPECT_FALSE(TestUpdater({"A", "B"}, {}).isApplicableForPPDFile(file.get()));
}

TEST(DefaultChoiceApplicability, FailsForAKeywordThatIsNoOption) {
    const auto file = parsedPPD("*A X/Ex: \"\"\n*DefaultA: X\n");
    EXPECT_FALSE(TestUpdater({"A"}, {}).isApplicableForPPDFile(file.get()));
}

TEST(DefaultChoiceApplicability, FailsForAnEmptyListOfOptions) {
    const auto file = parsedPPD(option("A", ""));
    EXPECT_FALSE(TestUpdater({}, {}).isApplicableForPPDFile(file.get()));
}

TEST(DefaultChoiceApplicability, FailsWithoutAPPD) {
    EXPECT_FALSE(TestUpdater({"A"}, {}).isApplicableForPPDFile(nullptr));
}

TEST(DefaultChoiceApplicability, TakesTheNamesOnceAndStopsAtTheFirstOptionThatExists) {
    TestUpdater updater({"A", "B", "C"}, {});
    const OneOptionPPDFile file("B");
    EXPECT_TRUE(updater.isApplicableForPPDFile(&file));
    EXPECT_EQ(updater.timesAskedForNames, 1);
    EXPECT_EQ(file.askedOptions, (std::vector<std::string>{"A", "B"}));
}

TEST(DefaultChoicesFromDevice, AreAskedForWithTheGivenURIAndContext) {
    TestUpdater updater({"A"}, OrbPPDDefaultChoices());
    OrbDictionary context;
    updater.updatedPPDContentsForContents_deviceURI_context(makePPDText(""), "ipp://p", &context);
    EXPECT_EQ(updater.askedURI, "ipp://p");
    EXPECT_EQ(updater.askedContext, &context);
}

TEST(DefaultChoicesFromDevice, AreAskedForWithoutAURIWhenThereIsNone) {
    TestUpdater updater({"A"}, OrbPPDDefaultChoices());
    updater.updatedPPDContentsForContents_deviceURI_context(makePPDText(""), std::nullopt, nullptr);
    EXPECT_EQ(updater.askedURI, std::nullopt);
    EXPECT_EQ(updater.askedContext, nullptr);
}

TEST(DefaultChoicesFromDevice, ChangeTheText) {
    TestUpdater updater({"A", "B"}, {{{"A", "X"}, {"B", "X"}}});
    EXPECT_EQ(textOf(updater.updatedPPDContentsForContents_deviceURI_context(
                  makePPDText("*P\n" + options("Y", "Y")), "ipp://p", nullptr)),
              "*P\n" + options("X", "X"));
}

TEST(DefaultChoicesFromDevice, GiveNullWhenTheDeviceGaveNothing) {
    TestUpdater updater({"A"}, std::nullopt);
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(
                  makePPDText("*P\n" + options("Y", "Y")), "ipp://p", nullptr),
              nullptr);
}

TEST(DefaultChoicesFromDevice, GiveTheSameObjectForAnEmptyMap) {
    TestUpdater updater({"A"}, OrbPPDDefaultChoices());
    const PPDText contents = makePPDText("*P\n" + options("Y", "Y"));
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(contents, "ipp://p", nullptr),
              contents);
}

TEST(DefaultChoicesFromDevice, GiveNullWhenOneChoiceIsMissingFromTheText) {
    TestUpdater updater({"A", "B"}, {{{"A", "X"}, {"B", "Z"}}});
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(
                  makePPDText("*P\n" + options("Y", "Y")), "ipp://p", nullptr),
              nullptr);
}

TEST(CopyingDefaultChoices, SetsTheDefaultsOfTheOtherPPD) {
    const auto file = parsedPPD(options("X", "Y"));
    EXPECT_EQ(textOf(TestUpdater({"A", "B"}, {})
                         .updatedPPDContentsForContents_PPDFile_context(
                             makePPDText("*P\n" + options("Y", "X")), file.get(), nullptr)),
              "*P\n" + options("X", "Y"));
}

TEST(CopyingDefaultChoices, DoesNotUseTheContext) {
    const auto file = parsedPPD(options("X", "Y"));
    OrbDictionary context;
    TestUpdater updater({"A"}, std::nullopt);
    EXPECT_EQ(textOf(updater.updatedPPDContentsForContents_PPDFile_context(
                  makePPDText("*P\n" + options("Y", "Y")), file.get(), &context)),
              "*P\n" + options("X", "Y"));
    EXPECT_TRUE(context.empty());
}

TEST(CopyingDefaultChoices, LeavesOtherOptionsAlone) {
    const auto file = parsedPPD(options("X", "X"));
    EXPECT_EQ(textOf(TestUpdater({"B"}, {}).updatedPPDContentsForContents_PPDFile_context(
                  makePPDText("*P\n" + options("Y", "Y")), file.get(), nullptr)),
              "*P\n" + options("Y", "X"));
}

TEST(CopyingDefaultChoices, GivesNullWhenALaterOptionIsMissingThere) {
    const auto file = parsedPPD(option("A", "*DefaultA: X\n"));
    EXPECT_EQ((TestUpdater({"A", "B"}, {})
                   .updatedPPDContentsForContents_PPDFile_context(
                       makePPDText("*P\n" + options("Y", "Y")), file.get(), nullptr)),
              nullptr);
}

TEST(CopyingDefaultChoices, GivesNullWhenAnOptionHasNoDefaultThere) {
    const auto file = parsedPPD(option("A", "*DefaultA: X\n") + option("B", ""));
    EXPECT_EQ((TestUpdater({"A", "B"}, {})
                   .updatedPPDContentsForContents_PPDFile_context(
                       makePPDText("*P\n" + options("Y", "Y")), file.get(), nullptr)),
              nullptr);
}

TEST(CopyingDefaultChoices, StopsAtTheFirstOptionWithoutADefault) {
    const OneOptionPPDFile file("A");
    TestUpdater({"A", "B"}, {})
        .updatedPPDContentsForContents_PPDFile_context(makePPDText("*P\n" + options("Y", "Y")),
                                                       &file, nullptr);
    EXPECT_EQ(file.askedOptions, std::vector<std::string>{"A"});
}

TEST(CopyingDefaultChoices, GivesNullWhenTheTextLacksTheChoice) {
    const auto file = parsedPPD(options("X", "Z"));
    EXPECT_EQ((TestUpdater({"A", "B"}, {})
                   .updatedPPDContentsForContents_PPDFile_context(
                       makePPDText("*P\n" + options("Y", "Y")), file.get(), nullptr)),
              nullptr);
}

TEST(CopyingDefaultChoices, GivesTheSameObjectForAnEmptyListOfOptions) {
    const auto file = parsedPPD(options("X", "X"));
    const PPDText contents = makePPDText("*P\n" + options("Y", "Y"));
    EXPECT_EQ((TestUpdater({}, {}).updatedPPDContentsForContents_PPDFile_context(
                  contents, file.get(), nullptr)),
              contents);
}

TEST(CopyingDefaultChoices, GivesNullWithoutAPPDOrAText) {
    const auto file = parsedPPD(options("X", "X"));
    EXPECT_EQ((TestUpdater({"A"}, {}).updatedPPDContentsForContents_PPDFile_context(
                  makePPDText("*P\n" + options("Y", "Y")), nullptr, nullptr)),
              nullptr);
    EXPECT_EQ((TestUpdater({"A"}, {}).updatedPPDContentsForContents_PPDFile_context(
                  nullptr, file.get(), nullptr)),
              nullptr);
}

TEST(DefaultChoiceValues, StandUnderDefaultAndTheOption) {
    const auto file = parsedPPD(
        "*OpenUI *ZrLowerTrayInstalled/Tray: Boolean\n*DefaultZrLowerTrayInstalled: False\n"
        "*ZrLowerTrayInstalled True/Yes: \"\"\n*ZrLowerTrayInstalled False/No: \"\"\n"
        "*CloseUI: *ZrLowerTrayInstalled\n");
    TestUpdater updater({"ZrLowerTrayInstalled"}, {{{"ZrLowerTrayInstalled", "True"}}});
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(file.get(), "ipp://p", nullptr),
              (OrbPPDUpdatingValues{{"DefaultZrLowerTrayInstalled", "True"}}));
}

TEST(DefaultChoiceValues, AreEmptyAndNotNothingForAChoiceThatTheOptionLacks) {
    const auto file = parsedPPD(option("A", ""));
    TestUpdater updater({"A"}, {{{"A", "Z"}}});
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(file.get(), "ipp://p", nullptr),
              OrbPPDUpdatingValues());
}

TEST(DefaultChoiceValues, LeaveOutOnlyTheChoicesThatThePPDLacks) {
    const auto file = parsedPPD(options("Y", "Y"));
    TestUpdater updater({"A", "B", "C"}, {{{"A", "X"}, {"B", "Z"}, {"C", "X"}}});
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(file.get(), "ipp://p", nullptr),
              (OrbPPDUpdatingValues{{"DefaultA", "X"}}));
}

TEST(DefaultChoiceValues, AreEmptyForAnEmptyMap) {
    const auto file = parsedPPD(options("Y", "Y"));
    TestUpdater updater({"A"}, OrbPPDDefaultChoices());
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(file.get(), "ipp://p", nullptr),
              OrbPPDUpdatingValues());
}

TEST(DefaultChoiceValues, AreNothingWhenTheDeviceGaveNothing) {
    const auto file = parsedPPD(options("Y", "Y"));
    TestUpdater updater({"A"}, std::nullopt);
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(file.get(), "ipp://p", nullptr),
              std::nullopt);
}

TEST(DefaultChoiceValues, DoNotNeedATranslationWhereTheTextEditDoes) {
    const std::string lines = "*OpenUI *A/N: PickOne\n*DefaultA: Y\n*A X: \"\"\n*CloseUI: *A\n";
    TestUpdater updater({"A"}, {{{"A", "X"}}});
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(parsedPPD(lines).get(),
                                                                    "ipp://p", nullptr),
              (OrbPPDUpdatingValues{{"DefaultA", "X"}}));
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(makePPDText("*P\n" + lines),
                                                                      "ipp://p", nullptr),
              nullptr);
}

TEST(DefaultChoiceOwnership, IsOfTheDefaultsOfItsOptionsAndNothingElse) {
    const OrbPPDOwnedLines owned = TestUpdater({"A", "B"}, {}).ownedLines({}, {});
    EXPECT_EQ(owned.defaultsOfOptions, (std::vector<std::string>{"A", "B"}));
    EXPECT_TRUE(owned.attributes.empty());
    EXPECT_TRUE(owned.choices.empty());
    EXPECT_FALSE(owned.mayTakeAway || owned.mayAdd);
}

TEST(DefaultChoiceTest, FindsAChoiceOfTheOption) {
    const auto file = parsedPPD(option("A", ""));
    TestUpdater updater({}, {});
    EXPECT_TRUE(updater.containsChoiceWithName_forOptionWithName_inPPDFile("X", "A", file.get()));
    EXPECT_FALSE(updater.containsChoiceWithName_forOptionWithName_inPPDFile("Z", "A", file.get()));
}

TEST(DefaultChoiceTest, FindsNothingInAnOptionThatIsNotThere) {
    const auto file = parsedPPD(option("A", ""));
    TestUpdater updater({}, {});
    EXPECT_FALSE(updater.containsChoiceWithName_forOptionWithName_inPPDFile("X", "B", file.get()));
    EXPECT_FALSE(
        updater.containsChoiceWithName_forOptionWithName_inPPDFile("X", std::nullopt, file.get()));
    EXPECT_FALSE(updater.containsChoiceWithName_forOptionWithName_inPPDFile("X", "A", nullptr));
}

}  // namespace
}  // namespace TkPPDUpdating
