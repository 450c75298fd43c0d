#include "updaters/default_choice/OrbPPDDefaultPageSizeUpdater.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core_interface/OrbCoreInterface.h"
#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"

namespace TkPPDUpdating {
namespace {

using Testing::CoreInterfaceScope;
using Testing::FakeCommunicationServices;
using Testing::FakeEnvironment;
using Testing::parsedPPD;
using Testing::textOf;

using Variables = std::map<std::string, std::string>;

class DefaultPageSize : public testing::Test {
  protected:
    static void setEnvironment(Variables variables) {
        OrbCoreInterface::setEnvironment(std::make_shared<FakeEnvironment>(std::move(variables)));
    }

  private:
    CoreInterfaceScope scope_;
};

struct PageSizeCase {
    const char* name;
    Variables variables;
    std::string identifier;
    std::string pageSize;
};

void PrintTo(const PageSizeCase& each, std::ostream* stream) {
    *stream << each.name;
}

class PageSizeOfLocale : public DefaultPageSize,
                         public testing::WithParamInterface<PageSizeCase> {};

TEST_P(PageSizeOfLocale, IsAsExpected) {
    setEnvironment(GetParam().variables);
    OrbPPDDefaultPageSizeUpdater updater;
    EXPECT_EQ(updater.currentLocaleIdentifier(), GetParam().identifier);
    EXPECT_EQ(updater.defaultPageSizeName(), GetParam().pageSize);
}

INSTANTIATE_TEST_SUITE_P(
    Is, PageSizeOfLocale,
    testing::ValuesIn(std::vector<PageSizeCase>{
        {"LetterForTheVariableEnUSWhateverTheUsersLocale",
         {{"ZrCurrentLocaleIdentifier", "en_US"}, {"LC_ALL", "de_DE.UTF-8"}},
         "en_US",
         "Letter"},
        {"A4ForTheVariableEnGB",
         {{"ZrCurrentLocaleIdentifier", "en_GB"}, {"LC_ALL", "en_US.UTF-8"}},
         "en_GB",
         "A4"},
        {"LetterForTheVariableEnUSPOSIX",
         {{"ZrCurrentLocaleIdentifier", "en_US_POSIX"}},
         "en_US_POSIX",
         "Letter"},
        {"A4ForTheEmptyVariable",
         {{"ZrCurrentLocaleIdentifier", ""}, {"LANG", "en_US.UTF-8"}},
         "",
         "A4"},
        {"A4ForAVariableWithACodesetWhichIsTakenAsItIs",
         {{"ZrCurrentLocaleIdentifier", "en_US.UTF-8"}},
         "en_US.UTF-8",
         "A4"},
        {"A4ForAVariableOfOtherCase", {{"ZrCurrentLocaleIdentifier", "en_us"}}, "en_us", "A4"},
        {"A4ForAVariableWithAHyphen", {{"ZrCurrentLocaleIdentifier", "en-US"}}, "en-US", "A4"},
        {"A4ForTheVariableCWhichIsTakenAsItIs", {{"ZrCurrentLocaleIdentifier", "C"}}, "C", "A4"},
        {"LetterForTheUsersLocaleEnUS", {{"LANG", "en_US.UTF-8"}}, "en_US", "Letter"},
        {"LetterForTheUsersLocaleC", {{"LANG", "C"}}, "en_US_POSIX", "Letter"},
        {"LetterForNoLocale", {}, "en_US_POSIX", "Letter"},
        {"A4ForEnCA", {{"LANG", "en_CA.UTF-8"}}, "en_CA", "A4"},
        {"A4ForEsUS", {{"LANG", "es_US.UTF-8"}}, "es_US", "A4"},
        {"A4ForDeDE", {{"LC_PAPER", "de_DE"}, {"LANG", "en_US"}}, "de_DE", "A4"},
    }),
    [](const auto& parameter) { return std::string(parameter.param.name); });

TEST_F(DefaultPageSize, IsFixedOnFirstUseForTheLifeOfTheInstance) {
    setEnvironment({{"LANG", "en_US"}});
    OrbPPDDefaultPageSizeUpdater before;
    EXPECT_EQ(before.defaultPageSizeName(), "Letter");
    setEnvironment({{"LANG", "de_DE"}});
    EXPECT_EQ(before.defaultPageSizeName(), "Letter");
    EXPECT_EQ(before.currentLocaleIdentifier(), "de_DE");
    OrbPPDDefaultPageSizeUpdater after;
    EXPECT_EQ(after.defaultPageSizeName(), "A4");
}

TEST_F(DefaultPageSize, IsNotFixedBeforeItsFirstUse) {
    setEnvironment({{"LANG", "en_US"}});
    OrbPPDDefaultPageSizeUpdater updater;
    setEnvironment({{"LANG", "de_DE"}});
    EXPECT_EQ(updater.defaultPageSizeName(), "A4");
}

TEST_F(DefaultPageSize, StandsInFourKeywords) {
    OrbPPDDefaultPageSizeUpdater updater;
    EXPECT_EQ(updater.optionNames(), (std::vector<std::string>{"PageSize", "PageRegion",
                                                               "ImageableArea", "PaperDimension"}));
}

TEST_F(DefaultPageSize, IsTheChoiceOfAllFourKeywordsWithoutAskingTheDevice) {
    setEnvironment({{"LANG", "de_DE"}});
    const auto services =
        std::make_shared<FakeCommunicationServices>(std::make_shared<Testing::FakeDeviceStatus>());
    OrbCoreInterface::setCommunicationServices(services);
    OrbPPDDefaultPageSizeUpdater updater;
    OrbDictionary context;
    EXPECT_EQ(updater.defaultChoicesFromDeviceWithURI_context("ipp://p", &context),
              (OrbPPDDefaultChoices{{"PageSize", "A4"},
                                    {"PageRegion", "A4"},
                                    {"ImageableArea", "A4"},
                                    {"PaperDimension", "A4"}}));
    EXPECT_TRUE(services->requests.empty());
    EXPECT_TRUE(context.empty());
}

/// Page sizes A4 and Letter; `letterDimension` is the rest of the line of Letter's paper dimension.
std::string pageSizes(const std::string& size, const std::string& region, const std::string& area,
                      const std::string& dimension,
                      const std::string& letterDimension = "/US Letter: \"612 792\"") {
    return "*OpenUI *PageSize/Media Size: PickOne\n*DefaultPageSize: " + size +
           "\n*PageSize A4/A4: \"\"\n*PageSize Letter/US Letter: \"\"\n*CloseUI: *PageSize\n"
           "*OpenUI *PageRegion/Media Size: PickOne\n*DefaultPageRegion: " +
           region +
           "\n*PageRegion A4/A4: \"\"\n*PageRegion Letter/US Letter: \"\"\n*CloseUI: *PageRegion\n"
           "*DefaultImageableArea: " +
           area +
           "\n*ImageableArea A4/A4: \"18 18 577 824\"\n"
           "*ImageableArea Letter/US Letter: \"18 18 594 774\"\n*DefaultPaperDimension: " +
           dimension + "\n*PaperDimension A4/A4: \"595 842\"\n*PaperDimension Letter" +
           letterDimension + "\n";
}

std::string pageSizes(const std::string& size) {
    return pageSizes(size, size, size, size);
}

TEST_F(DefaultPageSize, AppliesWhenThePPDHasTheSizeWhateverItsDefault) {
    setEnvironment({{"LANG", "en_US"}});
    for (const char* size : {"A4", "Letter"}) {
        OrbPPDDefaultPageSizeUpdater updater;
        EXPECT_TRUE(updater.isApplicableForPPDFile(parsedPPD(pageSizes(size)).get())) << size;
    }
}

TEST_F(DefaultPageSize, DoesNotApplyWhenThePPDLacksTheSize) {
    const auto file = parsedPPD("*PageSize A4/A4: \"\"\n*PageSize Letter.Small/Letter: \"\"\n");
    setEnvironment({{"LANG", "en_US"}});
    OrbPPDDefaultPageSizeUpdater letter;
    EXPECT_FALSE(letter.isApplicableForPPDFile(file.get()));
    setEnvironment({{"LANG", "de_DE"}});
    OrbPPDDefaultPageSizeUpdater a4;
    EXPECT_TRUE(a4.isApplicableForPPDFile(file.get()));
}

TEST_F(DefaultPageSize, DoesNotApplyWithoutAPPD) {
    OrbPPDDefaultPageSizeUpdater updater;
    EXPECT_FALSE(updater.isApplicableForPPDFile(nullptr));
}

TEST_F(DefaultPageSize, TestOfAChoiceLooksAtThePageSizesAndIgnoresTheOption) {
    const auto file = parsedPPD("*PaperDimension A4: \"595 842\"\n*InputSlot A5/Five: \"\"\n");
    OrbPPDDefaultPageSizeUpdater updater;
    for (const std::optional<std::string_view> option :
         {std::optional<std::string_view>(), std::optional<std::string_view>("InputSlot")}) {
        EXPECT_TRUE(
            updater.containsChoiceWithName_forOptionWithName_inPPDFile("A4", option, file.get()));
        EXPECT_FALSE(
            updater.containsChoiceWithName_forOptionWithName_inPPDFile("A5", option, file.get()));
    }
}

TEST_F(DefaultPageSize, ChangesAllFourLines) {
    setEnvironment({{"LANG", "en_US"}});
    OrbPPDDefaultPageSizeUpdater updater;
    EXPECT_EQ(textOf(updater.updatedPPDContentsForContents_deviceURI_context(
                  makePPDText("*P\n" + pageSizes("A4")), std::nullopt, nullptr)),
              "*P\n" + pageSizes("Letter"));
}

TEST_F(DefaultPageSize, BringsLinesThatDisagreeIntoStep) {
    setEnvironment({{"LANG", "de_DE"}});
    OrbPPDDefaultPageSizeUpdater updater;
    EXPECT_EQ(
        textOf(updater.updatedPPDContentsForContents_deviceURI_context(
            makePPDText("*P\n" + pageSizes("A4", "Letter", "A4", "Letter")), "ipp://p", nullptr)),
        "*P\n" + pageSizes("A4"));
}

TEST_F(DefaultPageSize, AppliesButGivesNullWhenTheDimensionHasNoTranslation) {
    setEnvironment({{"LANG", "en_US"}});
    const std::string lines = pageSizes("A4", "A4", "A4", "A4", ": \"612 792\"");
    OrbPPDDefaultPageSizeUpdater updater;
    EXPECT_TRUE(updater.isApplicableForPPDFile(parsedPPD(lines).get()));
    EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(makePPDText("*P\n" + lines),
                                                                      "ipp://p", nullptr),
              nullptr);
}

TEST_F(DefaultPageSize, GivesNullWhenAnyOfTheFourTranslationsIsMissing) {
    setEnvironment({{"LANG", "en_US"}});
    for (const std::string keyword :
         {"*PageSize", "*PageRegion", "*ImageableArea", "*PaperDimension"}) {
        std::string contents = "*P\n" + pageSizes("A4");
        const std::string translated = keyword + " Letter/US Letter:";
        contents.replace(contents.find(translated), translated.size(), keyword + " Letter:");
        OrbPPDDefaultPageSizeUpdater updater;
        EXPECT_EQ(updater.updatedPPDContentsForContents_deviceURI_context(makePPDText(contents),
                                                                          "ipp://p", nullptr),
                  nullptr)
            << keyword;
    }
}

TEST_F(DefaultPageSize, ValuesAreAlwaysEmpty) {
    setEnvironment({{"LANG", "en_US"}});
    OrbPPDDefaultPageSizeUpdater updater;
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(
                  parsedPPD(pageSizes("A4")).get(), "ipp://p", nullptr),
              OrbPPDUpdatingValues());
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(nullptr, std::nullopt, nullptr),
              OrbPPDUpdatingValues());
}

PPDText copied(const PPDText& contents, const OrbPPDFile* file) {
    OrbPPDDefaultPageSizeUpdater updater;
    return updater.updatedPPDContentsForContents_PPDFile_context(contents, file, nullptr);
}

TEST_F(DefaultPageSize, CopiesTheDefaultsOfAnotherPPDWhateverTheLocale) {
    setEnvironment({{"LANG", "de_DE"}});
    const auto file = parsedPPD(pageSizes("Letter", "A4", "Letter", "A4"));
    EXPECT_EQ(textOf(copied(makePPDText("*P\n" + pageSizes("A4")), file.get())),
              "*P\n" + pageSizes("Letter", "A4", "Letter", "A4"));
}

TEST_F(DefaultPageSize, CopyingPassesOverADefaultThatIsAbsentThere) {
    const auto file = parsedPPD(
        "*DefaultPageSize: Letter\n*DefaultImageableArea: Letter\n*DefaultPaperDimension: "
        "Letter\n");
    EXPECT_EQ(textOf(copied(makePPDText("*P\n" + pageSizes("A4")), file.get())),
              "*P\n" + pageSizes("Letter", "A4", "Letter", "Letter"));
}

TEST_F(DefaultPageSize, CopyingPassesOverADefaultWhoseFirstLineHasNoValue) {
    const auto file =
        parsedPPD("*DefaultPageSize: Letter\n*DefaultPageRegion:\n*DefaultPageRegion: Letter\n");
    EXPECT_EQ(textOf(copied(makePPDText("*P\n" + pageSizes("A4")), file.get())),
              "*P\n" + pageSizes("Letter", "A4", "A4", "A4"));
}

TEST_F(DefaultPageSize, CopyingTakesTheFirstOfSeveralDefaults) {
    const auto file = parsedPPD("*DefaultPageSize: Letter\n*DefaultPageSize: A4\n");
    EXPECT_EQ(textOf(copied(makePPDText("*P\n" + pageSizes("A4")), file.get())),
              "*P\n" + pageSizes("Letter", "A4", "A4", "A4"));
}

TEST_F(DefaultPageSize, CopyingGivesNullWhenTheTextLacksADefaultOfTheOtherPPD) {
    const auto file = parsedPPD("*DefaultPageSize: Letter\n*DefaultPaperDimension: Folio\n");
    EXPECT_EQ(copied(makePPDText("*P\n" + pageSizes("A4")), file.get()), nullptr);
}

TEST_F(DefaultPageSize, CopyingGivesNullForAnEmptyDefaultWhichIsAValue) {
    const auto file = parsedPPD("*DefaultPageSize: \"\"\n");
    EXPECT_EQ(copied(makePPDText("*P\n" + pageSizes("A4")), file.get()), nullptr);
}

TEST_F(DefaultPageSize, CopyingGivesTheSameObjectWhenThereIsNoDefaultThere) {
    const PPDText contents = makePPDText("*P\n" + pageSizes("A4"));
    EXPECT_EQ(copied(contents, parsedPPD("*ModelName: \"Zr\"\n").get()), contents);
    EXPECT_EQ(copied(contents, nullptr), contents);
}

TEST_F(DefaultPageSize, CopyingOfNoTextIsNoText) {
    EXPECT_EQ(copied(nullptr, parsedPPD(pageSizes("A4")).get()), nullptr);
}

}  // namespace
}  // namespace TkPPDUpdating
