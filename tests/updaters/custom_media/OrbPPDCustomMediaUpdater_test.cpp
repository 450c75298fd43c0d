#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "manager/OrbClassTable.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "tests/support/MediaDoubles.h"
#include "tests/updaters/custom_media/CustomMediaTestSupport.h"

namespace TkPPDUpdating {
namespace {

using namespace Testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Optional;
using testing::SizeIs;

// The contract.

using CustomMediaContract = CustomMediaTest;

TEST_F(CustomMediaContract, TheClassIsRegistered) {
    const auto classes = OrbClassTable();
    EXPECT_TRUE(std::any_of(classes.begin(), classes.end(), [](const OrbClass* each) {
        return each->name() == "OrbPPDCustomMediaUpdater";
    }));
}

TEST_F(CustomMediaContract, AppliesOnlyWhenTheFirstSupportAttributeIsTrue) {
    const struct {
        const char* lines;
        bool applies;
    } cases[] = {
        {"*ZrCustomMediaSupported: True\n", true},
        {"*ZrCustomMediaSupported: \"True\"\n", true},
        {"*ZrCustomMediaSupported: True\n*ZrCustomMediaSupported: False\n", true},
        {"*ZrCustomMediaSupported: False\n*ZrCustomMediaSupported: True\n", false},
        {"*ZrCustomMediaSupported: true\n", false},
        {"*ZrCustomMediaSupported: TRUE\n", false},
        {"*ZrCustomMediaSupported: True now\n", false},
        {"*ZrCustomMediaSupported: False\n", false},
        {"*ZrCustomMediaSupported: \"\"\n", false},
        {"*ZrCustomMediaSupported:\n", false},
        {"*zrCustomMediaSupported: True\n", false},
        {"*OtherKeyword: True\n", false},
    };
    for (const auto& each : cases) {
        OrbPPDCustomMediaUpdater updater;
        const auto file = parsed("*PPD-Adobe: \"4.3\"\n" + std::string(each.lines));
        EXPECT_EQ(updater.isApplicableForPPDFile(file.get()), each.applies) << each.lines;
    }
}

TEST_F(CustomMediaContract, DoesNotApplyToANullPPD) {
    EXPECT_FALSE(OrbPPDCustomMediaUpdater().isApplicableForPPDFile(nullptr));
}

TEST_F(CustomMediaContract, ValuesAreAlwaysAnEmptyDictionary) {
    OrbPPDCustomMediaUpdater updater;
    OrbDictionary context;
    const auto file = parsed(PPDWith());
    EXPECT_THAT(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(file.get(), "x:", &context),
                Optional(IsEmpty()));
    EXPECT_THAT(
        updater.PPDUpdatingValuesForPPDFile_deviceURI_context(nullptr, std::nullopt, nullptr),
        Optional(IsEmpty()));
}

TEST_F(CustomMediaContract, WritesTheMediaTypesThatTheDeviceReports) {
    const auto services =
        std::make_shared<const FakeCommunicationServices>(std::make_shared<FakeDeviceStatus>(
            FakeDeviceStatus::Values{{std::string(kTkCSCustomMediaTypesKey),
                                      OrbCustomMediaTypes{mediaType("Heavy Card", "1202", "4")}}}));
    OrbCoreInterface::setCommunicationServices(services);
    OrbPPDCustomMediaUpdater updater;
    OrbDictionary context;
    const PPDText text = updater.updatedPPDContentsForContents_deviceURI_context(
        makePPDText(PPDWith()), "test:printer", &context);
    ASSERT_TRUE(text);
    EXPECT_EQ(*text,
              PPDWith(choiceLines("custom1", "Heavy Card"), "",
                      "*ZrChoiceProperties MediaType.custom1: \"MediaID=1202;ParentMediaID=4;\"\n" +
                          categoryLines("custom1")));
    ASSERT_THAT(services->requests, SizeIs(1));
    EXPECT_EQ(services->requests[0].deviceURI, "test:printer");
    EXPECT_FALSE(services->requests[0].hadErrorSlot);
}

TEST_F(CustomMediaContract, UsesTheStatusThatTheContextHolds) {
    OrbDictionary context = OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::make_shared<FakeDeviceStatus>(FakeDeviceStatus::Values{
            {std::string(kTkCSCustomMediaTypesKey), OrbCustomMediaTypes{mediaType("Kept")}}}),
        nullptr);
    OrbPPDCustomMediaUpdater updater;
    const PPDText text = updater.updatedPPDContentsForContents_deviceURI_context(
        makePPDText(PPDWith()), "test:other", &context);
    ASSERT_TRUE(text);
    EXPECT_THAT(*text, HasSubstr("*MediaType custom1/Kept:"));
}

TEST_F(CustomMediaContract, ADeviceWithoutCustomMediaRemovesTheEarlierBlock) {
    const std::string earlier = updatedText(PPDWith(), {mediaType("Old")});
    const struct {
        const char* what;
        std::shared_ptr<const OrbCSDeviceStatus> status;
    } cases[] = {
        {"no status", nullptr},
        {"not reported", std::make_shared<FakeDeviceStatus>()},
        {"an empty list", std::make_shared<FakeDeviceStatus>(FakeDeviceStatus::Values{
                              {std::string(kTkCSCustomMediaTypesKey), OrbCustomMediaTypes()}})},
    };
    for (const auto& each : cases) {
        OrbCoreInterface::setCommunicationServices(
            std::make_shared<const FakeCommunicationServices>(each.status));
        OrbPPDCustomMediaUpdater updater;
        OrbDictionary context;
        const PPDText text = updater.updatedPPDContentsForContents_deviceURI_context(
            makePPDText(earlier), "test:printer", &context);
        ASSERT_TRUE(text) << each.what;
        EXPECT_EQ(*text, PPDWith()) << each.what;
    }
}

// The main run.

using CustomMediaRun = CustomMediaTest;

TEST_F(CustomMediaRun, TwoMediaTypesOneWithAProfileToTheByte) {
    const std::string expected =
        PPDWith(R"(*MediaType custom1/Glossy Brochure: "<</MediaType(custom1)>>setpagedevice"
*fr.MediaType custom1/Glossy Brochure: ""
*MediaType custom2/Heavy Card: "<</MediaType(custom2)>>setpagedevice"
*fr.MediaType custom2/Heavy Card: ""
)",
                R"(*ZrICCProfileId2 q1/gloss: ""
*fr.ZrICCProfileId2 q1/gloss: ""
)",
                R"(*cupsICCProfile ..q1/gloss: "/profiles/gloss.icc"
*fr.cupsICCProfile ..q1/gloss: ""
*ZrChoiceProperties MediaType.custom1: "MediaID=1201;ParentMediaID=3;ZrICCProfileId2=q1;"
*ZrChoiceProperties MediaType.custom2: "MediaID=1202;ParentMediaID=4;"
*ZrMediaTypeCategory custom/Custom: "custom1 custom2"
*fr.ZrMediaTypeCategory custom/Custom: ""
)");
    EXPECT_EQ(updatedText(PPDWith(), {mediaType("Glossy Brochure", "1201", "3",
                                                profile("file:///profiles/gloss.icc", "q1")),
                                      mediaType("Heavy Card", "1202", "4")}),
              expected);
}

TEST_F(CustomMediaRun, RepeatedRunsGiveTheSameTextAndNames) {
    const OrbCustomMediaTypes types = {
        mediaType("One", "77", "1", profile("file:///p/one.icc", "q1")), mediaType("Two", "5", "1"),
        mediaType("Three", "900", "2")};
    const std::string once = updatedText(PPDWith(), types);
    EXPECT_THAT(once, HasSubstr("\"custom1 custom2 custom3\""));
    EXPECT_EQ(updatedText(once, types), once);
}

TEST_F(CustomMediaRun, OneUpdaterServesOneRunAfterTheOther) {
    OrbPPDCustomMediaUpdater updater;
    const auto first = updater.contentsForContents_updatedWithCustomMediaTypes(
        makePPDText(PPDWith()),
        {mediaType("One", "1", "1", profile("file:///p/one.icc", "q1")), mediaType("Two")});
    ASSERT_TRUE(first);
    const auto second = updater.contentsForContents_updatedWithCustomMediaTypes(
        makePPDText(PPDWith()), {mediaType("Three")});
    ASSERT_TRUE(second);
    EXPECT_EQ(*second, updatedText(PPDWith(), {mediaType("Three")}));
    EXPECT_THAT(updater.customMediaNames(), ElementsAre("custom1"));
    EXPECT_THAT(updater.customMediaTypes(), SizeIs(1));
    EXPECT_THAT(updater.customICCProfiles(), IsEmpty());
}

TEST_F(CustomMediaRun, ListsAndProcessorStayWithTheUpdater) {
    OrbPPDCustomMediaUpdater updater;
    EXPECT_THAT(updater.customMediaTypes(), IsEmpty());
    EXPECT_THAT(updater.customMediaNames(), IsEmpty());
    EXPECT_THAT(updater.customICCProfiles(), IsEmpty());
    EXPECT_EQ(updater.PPDProcessor(), nullptr);
    const auto gloss = profile("file:///p/gloss.icc", "q1");
    const auto text = updater.contentsForContents_updatedWithCustomMediaTypes(
        makePPDText(PPDWith()), {mediaType("One"), mediaType("Two", "1", "1", gloss)});
    EXPECT_THAT(updater.customMediaTypes(), SizeIs(2));
    EXPECT_THAT(updater.customMediaNames(), ElementsAre("custom1", "custom2"));
    EXPECT_THAT(updater.customICCProfiles(), ElementsAre(gloss));
    ASSERT_TRUE(updater.PPDProcessor());
    EXPECT_EQ(updater.PPDProcessor()->content(), text);
    updater.clear();
    EXPECT_THAT(updater.customMediaTypes(), IsEmpty());
    EXPECT_THAT(updater.customMediaNames(), IsEmpty());
    EXPECT_THAT(updater.customICCProfiles(), IsEmpty());
    EXPECT_TRUE(updater.PPDProcessor());
}

TEST_F(CustomMediaRun, WithoutMediaTypesAndEarlierBlockTheTextItselfIsGivenBack) {
    for (const std::string& text : {PPDWith(), std::string("*PPD-Adobe: \"4.3\""), std::string()}) {
        const PPDText contents = makePPDText(text);
        OrbPPDCustomMediaUpdater updater;
        EXPECT_EQ(updater.contentsForContents_updatedWithCustomMediaTypes(contents, {}), contents);
    }
}

TEST_F(CustomMediaRun, NullEntriesAmongTheMediaTypesAreLeftOut) {
    EXPECT_EQ(updatedText(PPDWith(), {nullptr, mediaType("A"), nullptr}),
              updatedText(PPDWith(), {mediaType("A")}));
    EXPECT_EQ(updatedText(PPDWith(), {nullptr}), PPDWith());
}

TEST_F(CustomMediaRun, ANullTextGivesNoText) {
    OrbPPDCustomMediaUpdater updater;
    EXPECT_EQ(updater.contentsForContents_updatedWithCustomMediaTypes(nullptr, {}), nullptr);
    EXPECT_EQ(updater.contentsForContents_updatedWithCustomMediaTypes(nullptr, {mediaType("Name")}),
              nullptr);
}

TEST_F(CustomMediaRun, ATextWithoutFinalLineFeedGetsOne) {
    std::string text = PPDWith();
    text.pop_back();
    EXPECT_EQ(updatedText(text, {mediaType("Name")}), updatedText(PPDWith(), {mediaType("Name")}));
}

/// `text` without the first occurrence of `part`.
std::string without(std::string text, std::string_view part) {
    const std::size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos) << part;
    return text.erase(at, part.size());
}

TEST_F(CustomMediaRun, FailsWithoutTheClosingLineOfMediaType) {
    EXPECT_EQ(updated(without(PPDWith(), "*CloseUI: *MediaType\n"), {mediaType("Name")}), nullptr);
}

TEST_F(CustomMediaRun, FailsWithoutTheClosingLineOfTheProfilesEvenWhenNoneHasAProfile) {
    EXPECT_EQ(updated(without(PPDWith(), "*CloseUI: *ZrICCProfileId2\n"), {mediaType("Name")}),
              nullptr);
}

TEST_F(CustomMediaRun, FailsOnATextWithNeitherClosingLine) {
    EXPECT_EQ(updated("*PPD-Adobe: \"4.3\"\n", {mediaType("Name")}), nullptr);
    EXPECT_EQ(updated("", {mediaType("Name")}), nullptr);
}

TEST_F(CustomMediaRun, AFailedRunKeepsNothingNotEvenTheRemoval) {
    const std::string earlier =
        without(updatedText(PPDWith(), {mediaType("Old")}), "*CloseUI: *ZrICCProfileId2\n");
    const PPDText contents = makePPDText(earlier);
    OrbPPDCustomMediaUpdater updater;
    EXPECT_EQ(updater.contentsForContents_updatedWithCustomMediaTypes(contents, {mediaType("New")}),
              nullptr);
    EXPECT_EQ(*contents, earlier);
    // Without media types there is nothing that could fail.
    EXPECT_EQ(updatedText(earlier, {}), without(PPDWith(), "*CloseUI: *ZrICCProfileId2\n"));
}

TEST_F(CustomMediaRun, AFailedRunLeavesItsListsAndItsProcessor) {
    const auto gloss = profile("file:///p/gloss.icc", "q1");
    OrbPPDCustomMediaUpdater updater;
    // The properties of the second are too long for a line.
    EXPECT_EQ(updater.contentsForContents_updatedWithCustomMediaTypes(
                  makePPDText(PPDWith()),
                  {mediaType("One", "1", "1", gloss), mediaType("Two", std::string(256, '7'))}),
              nullptr);
    EXPECT_THAT(updater.customMediaTypes(), SizeIs(2));
    EXPECT_THAT(updater.customMediaNames(), ElementsAre("custom1", "custom2"));
    EXPECT_THAT(updater.customICCProfiles(), ElementsAre(gloss));
    ASSERT_TRUE(updater.PPDProcessor());
    EXPECT_THAT(*updater.PPDProcessor()->content(), HasSubstr("*MediaType custom2/Two:"));
}

TEST_F(CustomMediaRun, TheClosingLineIsFoundByItsPrefixIgnoringCase) {
    const struct {
        const char* line;
        bool isFound;
    } cases[] = {
        {"*CloseUI: *MediaType", true},      {"*CloseUI:   *MediaType", true},
        {"*closeui: *mediatype", true},      {"*CloseUI: *MediaType ", true},
        {"*CloseUI: *MediaTypeOther", true}, {"*CloseUI:*MediaType", false},
        {"*CloseUI: MediaType", false},      {"*CloseUI:\t*MediaType", false},
        {"*JCLCloseUI: *MediaType", false},  {" *CloseUI: *MediaType", false},
    };
    for (const auto& each : cases) {
        const std::string text =
            without(PPDWith(), "*CloseUI: *MediaType\n") + each.line + "\n*ZrLast: \"\"\n";
        const PPDText result = updated(text, {mediaType("Name")});
        ASSERT_EQ(result != nullptr, each.isFound) << each.line;
        if (result) {
            EXPECT_THAT(*result, HasSubstr("*fr.MediaType custom1/Name: \"\"\n" +
                                           std::string(each.line) + "\n"));
        }
    }
}

TEST_F(CustomMediaRun, FailsWhenAPropertiesLineIsTooLong) {
    // *ZrChoiceProperties MediaType.custom1: "MediaID=...;ParentMediaID=3;" is 66 bytes long
    // without the media ID.
    const std::string longest(255 - 66, '7');
    const std::string line =
        "\n*ZrChoiceProperties MediaType.custom1: \"MediaID=" + longest + ";ParentMediaID=3;\"\n";
    ASSERT_EQ(line.size(), 255U + 2U);
    EXPECT_THAT(updatedText(PPDWith(), {mediaType("Name", longest, "3")}), HasSubstr(line));
    EXPECT_EQ(updated(PPDWith(), {mediaType("Name", longest + "7", "3")}), nullptr);
}

// Step by step.

/// An updater over `PPDWith`, between two steps.
class CustomMediaSteps : public CustomMediaTest {
  protected:
    void start(OrbCustomMediaTypes types, const std::string& text = PPDWith()) {
        updater.setPPDProcessor(OrbPPDProcessor::processorWithPPDContent(makePPDText(text)));
        updater.setCustomMediaTypes(std::move(types));
    }
    std::string content() { return *updater.PPDProcessor()->content(); }

    OrbPPDCustomMediaUpdater updater;
};

TEST_F(CustomMediaSteps, WithoutAProcessorTheStepsFailAndRemovalDoesNothing) {
    updater.setCustomMediaTypes(
        {mediaType("Name", "1", "1", profile("file:///p/gloss.icc", "q1"))});
    EXPECT_FALSE(updater.appendCustomMediaTypes());
    EXPECT_TRUE(updater.appendCustomProfiles());
    EXPECT_THAT(updater.customICCProfiles(), IsEmpty());
    EXPECT_FALSE(updater.appendCustomZrProfiles());
    updater.setCustomMediaNames({"custom1"});
    EXPECT_FALSE(updater.appendZrChoiceProperties());
    EXPECT_FALSE(updater.appendZrMediaTypeCategory());
    updater.deleteCustomInfo();
    updater.deleteMediaTypesAndChoicePropertiesForMediaTypes({"custom1"});
    updater.deleteICCProfilesAndColorSyncProfiles({"q1"});
    EXPECT_THAT(updater.customICCProfilesForCustomMediaTypes({"custom1"}), IsEmpty());
}

TEST_F(CustomMediaSteps, WithoutMediaTypesEachStepSucceeds) {
    start({});
    EXPECT_TRUE(updater.appendCustomMediaTypes());
    EXPECT_TRUE(updater.appendCustomProfiles());
    EXPECT_TRUE(updater.appendCustomZrProfiles());
    EXPECT_TRUE(updater.appendZrChoiceProperties());
    EXPECT_EQ(content(), PPDWith());
    EXPECT_TRUE(updater.appendZrMediaTypeCategory());
}

TEST_F(CustomMediaSteps, ChoicesAreNumberedByPositionWhateverTheirIDs) {
    start({mediaType("A", "900"), mediaType("B", "custom7"), mediaType("C", std::nullopt)});
    EXPECT_TRUE(updater.appendCustomMediaTypes());
    EXPECT_THAT(updater.customMediaNames(), ElementsAre("custom1", "custom2", "custom3"));
    EXPECT_EQ(content(), PPDWith(choiceLines("custom1", "A") + choiceLines("custom2", "B") +
                                 choiceLines("custom3", "C")));
}

TEST_F(CustomMediaSteps, ChoicesAreNumberedFromOneInEveryCall) {
    start({mediaType("One"), mediaType("Two")});
    ASSERT_TRUE(updater.appendCustomMediaTypes());
    ASSERT_TRUE(updater.appendCustomMediaTypes());
    EXPECT_THAT(updater.customMediaNames(),
                ElementsAre("custom1", "custom2", "custom1", "custom2"));
    const std::string choices = choiceLines("custom1", "One") + choiceLines("custom2", "Two");
    EXPECT_EQ(content(), PPDWith(choices + choices));
}

TEST_F(CustomMediaSteps, TheNameOfAChoiceThatCannotBeInsertedIsGivenOutAllTheSame) {
    // Without an editor nothing can be inserted: no name is so long that its line would be refused.
    start({mediaType("One"),
           std::make_shared<ActingMediaType>([this] { updater.setPPDProcessor(nullptr); }),
           mediaType("Three")});
    EXPECT_FALSE(updater.appendCustomMediaTypes());
    EXPECT_THAT(updater.customMediaNames(), ElementsAre("custom1", "custom2"));
}

TEST_F(CustomMediaSteps, AChoiceWithoutANameHasNoTextAndNoTranslations) {
    start({mediaType(std::nullopt)});
    EXPECT_TRUE(updater.appendCustomMediaTypes());
    EXPECT_EQ(content(), PPDWith("*MediaType custom1: \"<</MediaType(custom1)>>setpagedevice\"\n"));
}

TEST_F(CustomMediaSteps, AnEmptyNameIsAText) {
    start({mediaType("")});
    EXPECT_TRUE(updater.appendCustomMediaTypes());
    EXPECT_EQ(content(), PPDWith(choiceLines("custom1", "")));
}

TEST_F(CustomMediaSteps, ANameThatIsNotASCIIStandsInTheTranslationsOnly) {
    start({mediaType("Papier glacé")});
    EXPECT_TRUE(updater.appendCustomMediaTypes());
    EXPECT_EQ(content(), PPDWith("*MediaType custom1: \"<</MediaType(custom1)>>setpagedevice\"\n"
                                 "*en.MediaType custom1/Papier glacé: \"\"\n"
                                 "*fr.MediaType custom1/Papier glacé: \"\"\n"));
}

TEST_F(CustomMediaSteps, ProfilesGoToTheEndOfTheText) {
    const auto first = profile("file:///p/a.icc", "q1");
    const auto second = profile("file:///p/b.icc", "q2");
    start({mediaType("A", "1", "1", first), mediaType("B"), mediaType("C", "2", "1", second)});
    EXPECT_TRUE(updater.appendCustomProfiles());
    EXPECT_EQ(content(), PPDWith("", "",
                                 "*cupsICCProfile ..q1/a: \"/p/a.icc\"\n"
                                 "*fr.cupsICCProfile ..q1/a: \"\"\n"
                                 "*cupsICCProfile ..q2/b: \"/p/b.icc\"\n"
                                 "*fr.cupsICCProfile ..q2/b: \"\"\n"));
    EXPECT_THAT(updater.customICCProfiles(), ElementsAre(first, second));
}

TEST_F(CustomMediaSteps, AProfileIDIsTheQualifierWhenThereIsNoOther) {
    start({mediaType("A", "1", "1", profile("file:///p/a.icc", std::nullopt, 7)),
           mediaType("B", "1", "1", profile("file:///p/b.icc", "q", 8))});
    EXPECT_TRUE(updater.appendCustomProfiles());
    EXPECT_THAT(content(), HasSubstr("*cupsICCProfile ..7/a: \"/p/a.icc\"\n"));
    EXPECT_THAT(content(), HasSubstr("*cupsICCProfile ..q/b: \"/p/b.icc\"\n"));
}

TEST_F(CustomMediaSteps, AProfileWithoutQualifierOrFileIsSkipped) {
    for (const Profile& each :
         {profile("file:///p/a.icc", std::nullopt), profile(std::nullopt, "q1"), profile("", "q1"),
          profile("https://host/a.icc", "q1"), profile("file://otherhost/a.icc", "q1"),
          profile("file:///%zz", "q1"), profile("/p/a.icc", "q1")}) {
        OrbPPDCustomMediaUpdater fresh;
        fresh.setPPDProcessor(OrbPPDProcessor::processorWithPPDContent(makePPDText(PPDWith())));
        fresh.setCustomMediaTypes({mediaType("A", "1", "1", each)});
        EXPECT_TRUE(fresh.appendCustomProfiles());
        EXPECT_THAT(fresh.customICCProfiles(), IsEmpty());
        EXPECT_EQ(*fresh.PPDProcessor()->content(), PPDWith());
    }
}

TEST_F(CustomMediaSteps, TheTextOfAProfileIsItsFileNameWithoutExtension) {
    const struct {
        const char* URL;
        const char* path;
        const char* text;
    } cases[] = {
        {"file:///p/gloss.icc", "/p/gloss.icc", "gloss"},
        {"file://localhost/p/gloss.icc", "/p/gloss.icc", "gloss"},
        {"file:/p/gloss.icc", "/p/gloss.icc", "gloss"},
        {"file:///p/a.b.icc", "/p/a.b.icc", "a.b"},
        {"file:///p/name", "/p/name", "name"},
        {"file:///p.d/name", "/p.d/name", "name"},
        {"file:///p/.icc", "/p/.icc", ".icc"},
        {"file:///p/.hidden.icc", "/p/.hidden.icc", ".hidden"},
        {"file:///p/name.", "/p/name.", "name"},
        {"file:///p/name..icc", "/p/name..icc", "name."},
        {"file:///p/gloss.icc/", "/p/gloss.icc/", "gloss"},
        {"file:///p/gloss.icc//", "/p/gloss.icc//", "gloss"},
        {"file:///", "/", "/"},
        {"file:///p/two%20words.icc", "/p/two words.icc", "two words"},
        {"file:///p/50%25%23%3F.icc", "/p/50%#?.icc", "50%#?"},
        {"file:///p/../gloss.icc", "/p/../gloss.icc", "gloss"},
    };
    for (const auto& each : cases) {
        const PPDText text =
            updated(PPDWith(), {mediaType("A", "1", "1", profile(each.URL, "q1"))});
        ASSERT_TRUE(text) << each.URL;
        EXPECT_THAT(*text, HasSubstr("*cupsICCProfile ..q1/" + std::string(each.text) + ": \"" +
                                     each.path + "\"\n"))
            << each.URL;
        EXPECT_THAT(*text, HasSubstr("*ZrICCProfileId2 q1/" + std::string(each.text) + ": \"\"\n"))
            << each.URL;
    }
}

TEST_F(CustomMediaSteps, ARelativeFileURLCountsFromTheWorkingDirectory) {
    const std::string here = std::filesystem::current_path().string();
    EXPECT_THAT(updatedText(PPDWith(), {mediaType("A", "1", "1", profile("file:a.icc", "q1"))}),
                HasSubstr("*cupsICCProfile ..q1/a: \"" + here + "/a.icc\"\n"));
    EXPECT_THAT(
        updatedText(PPDWith(), {mediaType("A", "1", "1", profile("file:./x/../a.icc", "q1"))}),
        HasSubstr("*cupsICCProfile ..q1/a: \"" + here + "/a.icc\"\n"));
}

TEST_F(CustomMediaSteps, AFileNameThatIsNotASCIIStandsInTheTranslationsOnly) {
    EXPECT_EQ(updatedText(PPDWith(),
                          {mediaType("A", "1", "2", profile("file:///p/glac%C3%A9.icc", "q1"))}),
              PPDWith(choiceLines("custom1", "A"),
                      "*ZrICCProfileId2 q1: \"\"\n"
                      "*en.ZrICCProfileId2 q1/glacé: \"\"\n"
                      "*fr.ZrICCProfileId2 q1/glacé: \"\"\n",
                      "*cupsICCProfile ..q1: \"/p/glacé.icc\"\n"
                      "*en.cupsICCProfile ..q1/glacé: \"\"\n"
                      "*fr.cupsICCProfile ..q1/glacé: \"\"\n"
                      "*ZrChoiceProperties MediaType.custom1: "
                      "\"MediaID=1;ParentMediaID=2;ZrICCProfileId2=q1;\"\n" +
                          categoryLines("custom1")));
}

TEST_F(CustomMediaSteps, AProfileWhoseLineIsTooLongIsDroppedAlone) {
    // *cupsICCProfile ..q1/gloss: "/.../gloss.icc" is 41 bytes long without the folder's name.
    const std::string longest(255 - 41, 'f');
    const std::string line = "\n*cupsICCProfile ..q1/gloss: \"/" + longest + "/gloss.icc\"\n";
    ASSERT_EQ(line.size(), 255U + 2U);
    const auto text = [](const std::string& folder) {
        return updatedText(
            PPDWith(), {mediaType("A", "1", "2", profile("file:///" + folder + "/gloss.icc", "q1")),
                        mediaType("B", "3", "4", profile("file:///b.icc", "q2"))});
    };
    EXPECT_THAT(text(longest), HasSubstr(line));
    EXPECT_EQ(text(longest + "f"),
              PPDWith(choiceLines("custom1", "A") + choiceLines("custom2", "B"),
                      "*ZrICCProfileId2 q2/b: \"\"\n*fr.ZrICCProfileId2 q2/b: \"\"\n",
                      "*cupsICCProfile ..q2/b: \"/b.icc\"\n*fr.cupsICCProfile ..q2/b: \"\"\n"
                      "*ZrChoiceProperties MediaType.custom1: \"MediaID=1;ParentMediaID=2;\"\n"
                      "*ZrChoiceProperties MediaType.custom2: "
                      "\"MediaID=3;ParentMediaID=4;ZrICCProfileId2=q2;\"\n" +
                          categoryLines("custom1 custom2")));
}

TEST_F(CustomMediaSteps, TheProfileChoicesFailWithoutTheirClosingLine) {
    start({}, without(PPDWith(), "*CloseUI: *ZrICCProfileId2\n"));
    EXPECT_FALSE(updater.appendCustomZrProfiles());
}

TEST_F(CustomMediaSteps, TheProfileChoicesFailWhenALineIsRefused) {
    start({});
    updater.setCustomICCProfiles({profile("file:///p/a.icc", std::string(256, 'q'))});
    EXPECT_FALSE(updater.appendCustomZrProfiles());
    EXPECT_EQ(content(), PPDWith());
}

TEST_F(CustomMediaSteps, TheProfileChoicesFailForAProfileThatHasNone) {
    for (const Profile& without :
         {profile("file:///p/a.icc", std::nullopt), profile(std::nullopt, "q1"), Profile()}) {
        start({});
        updater.setCustomICCProfiles({profile("file:///p/b.icc", "q2"), without});
        EXPECT_FALSE(updater.appendCustomZrProfiles());
    }
}

TEST_F(CustomMediaSteps, TheEntriesOfThePropertiesStopAtTheFirstMissingIdentifier) {
    start({mediaType("A", "1", "2"), mediaType("B", "1", std::nullopt),
           mediaType("C", std::nullopt, "2"), mediaType("D", "", "")});
    updater.setCustomMediaNames({"a", "b", "c", "d"});
    EXPECT_TRUE(updater.appendZrChoiceProperties());
    EXPECT_EQ(content(),
              PPDWith("", "",
                      "*ZrChoiceProperties MediaType.a: \"MediaID=1;ParentMediaID=2;\"\n"
                      "*ZrChoiceProperties MediaType.b: \"MediaID=1;\"\n"
                      "*ZrChoiceProperties MediaType.c: \"\"\n"
                      "*ZrChoiceProperties MediaType.d: \"MediaID=;ParentMediaID=;\"\n"));
}

TEST_F(CustomMediaSteps, AMissingIdentifierDoesNotKeepTheProfileOut) {
    const auto gloss = profile("file:///p/gloss.icc", "q1");
    start({mediaType("A", std::nullopt, std::nullopt, gloss)});
    updater.setCustomMediaNames({"a"});
    updater.setCustomICCProfiles({gloss});
    EXPECT_TRUE(updater.appendZrChoiceProperties());
    EXPECT_EQ(content(),
              PPDWith("", "", "*ZrChoiceProperties MediaType.a: \"ZrICCProfileId2=q1;\"\n"));
}

TEST_F(CustomMediaSteps, ThePropertiesNameOnlyProfilesThatWereInserted) {
    start({mediaType("A", "1", "2", profile("file:///p/a.icc", "q1"))});
    updater.setCustomMediaNames({"a"});
    updater.setCustomICCProfiles({profile("file:///p/b.icc", "q2")});
    EXPECT_TRUE(updater.appendZrChoiceProperties());
    EXPECT_THAT(content(), Not(HasSubstr("ZrICCProfileId2=")));
}

TEST_F(CustomMediaSteps, InsertedProfilesAreFoundByEquality) {
    start({mediaType("A", "1", "2", profile("file:///p/a.icc", "q1", 3))});
    updater.setCustomMediaNames({"a"});
    updater.setCustomICCProfiles({profile("file:///p/a.icc", "q1", 3)});
    EXPECT_TRUE(updater.appendZrChoiceProperties());
    EXPECT_THAT(content(), HasSubstr("ZrICCProfileId2=q1;"));
}

TEST_F(CustomMediaSteps, TheEqualityOfTheProfilesThemselvesCounts) {
    start({mediaType(
        "A", "1", "2",
        std::make_shared<const ProfileOfQualifier>("file:///p/other.icc", "q1", std::nullopt))});
    updater.setCustomMediaNames({"a"});
    updater.setCustomICCProfiles(
        {std::make_shared<const ProfileOfQualifier>("file:///p/a.icc", "q1", std::nullopt)});
    EXPECT_TRUE(updater.appendZrChoiceProperties());
    EXPECT_THAT(content(), HasSubstr("ZrICCProfileId2=q1;"));
}

TEST_F(CustomMediaSteps, FewerNamesThanMediaTypesIsOutOfRange) {
    start({mediaType("A"), mediaType("B")});
    updater.setCustomMediaNames({"a"});
    EXPECT_THROW(updater.appendZrChoiceProperties(), std::out_of_range);
}

TEST_F(CustomMediaSteps, ASharedProfileIsWrittenOnceForEachMediaType) {
    const auto shared = profile("file:///p/gloss.icc", "q1");
    const std::string lines =
        "*cupsICCProfile ..q1/gloss: \"/p/gloss.icc\"\n*fr.cupsICCProfile ..q1/gloss: \"\"\n";
    const std::string choice =
        "*ZrICCProfileId2 q1/gloss: \"\"\n*fr.ZrICCProfileId2 q1/gloss: \"\"\n";
    EXPECT_EQ(updatedText(PPDWith(),
                          {mediaType("A", "1", "2", shared), mediaType("B", "3", "4", shared)}),
              PPDWith(choiceLines("custom1", "A") + choiceLines("custom2", "B"), choice + choice,
                      lines + lines +
                          "*ZrChoiceProperties MediaType.custom1: "
                          "\"MediaID=1;ParentMediaID=2;ZrICCProfileId2=q1;\"\n"
                          "*ZrChoiceProperties MediaType.custom2: "
                          "\"MediaID=3;ParentMediaID=4;ZrICCProfileId2=q1;\"\n" +
                          categoryLines("custom1 custom2")));
}

/// "custom1 ... customN".
std::string numberedNames(int first, int last) {
    std::string names;
    for (int i = first; i <= last; ++i) {
        names += (i == first ? "custom" : " custom") + std::to_string(i);
    }
    return names;
}

std::vector<std::string> numberedNameList(int last) {
    std::vector<std::string> names;
    for (int i = 1; i <= last; ++i) {
        names.push_back("custom" + std::to_string(i));
    }
    return names;
}

TEST_F(CustomMediaSteps, ACategoryLineBelow256BytesIsNotWrapped) {
    // 37 bytes before the names, 9 * 7 + 16 * 8 + 24 of names and blanks, 1 of the quote: 253.
    start({});
    updater.setCustomMediaNames(numberedNameList(25));
    EXPECT_TRUE(updater.appendZrMediaTypeCategory());
    EXPECT_EQ(content(), PPDWith("", "", categoryLines(numberedNames(1, 25))));
}

TEST_F(CustomMediaSteps, ALongerCategoryLineIsWrapped) {
    start({});
    updater.setCustomMediaNames(numberedNameList(26));
    EXPECT_TRUE(updater.appendZrMediaTypeCategory());
    EXPECT_EQ(content(), PPDWith("", "",
                                 "*ZrMediaTypeCategory custom/Custom: \"" + numberedNames(1, 25) +
                                     "\ncustom26\"\n*End\n"
                                     "*fr.ZrMediaTypeCategory custom/Custom: \"\"\n"));
}

TEST_F(CustomMediaSteps, ACategoryNameTooLongToWrapFails) {
    start({});
    updater.setCustomMediaNames({std::string(256, 'c')});
    EXPECT_FALSE(updater.appendZrMediaTypeCategory());
    EXPECT_EQ(content(), PPDWith());
}

// The qualifier of a profile.

using CustomMediaQualifier = CustomMediaTest;

TEST_F(CustomMediaQualifier, OwnQualifierThenIDThenNothing) {
    const auto qualifier = [](const Profile& each) {
        return OrbPPDCustomMediaUpdater::PPDProfileQualifierForProfile(each.get());
    };
    EXPECT_EQ(qualifier(nullptr), std::nullopt);
    EXPECT_EQ(qualifier(profile("file:///a", "q1", 7)), "q1");
    EXPECT_EQ(qualifier(profile("file:///a", "", 7)), "");
    EXPECT_EQ(qualifier(profile("file:///a", std::nullopt, 7)), "7");
    EXPECT_EQ(qualifier(profile("file:///a", std::nullopt, UINT64_MAX)), "18446744073709551615");
    EXPECT_EQ(qualifier(profile("file:///a", std::nullopt)), std::nullopt);
}

TEST_F(CustomMediaQualifier, WithoutACoreLibraryAnIDMakesNone) {
    OrbCoreInterface::setCore(nullptr);
    EXPECT_EQ(OrbPPDCustomMediaUpdater::PPDProfileQualifierForProfile(
                  profile("file:///a", std::nullopt, 7).get()),
              std::nullopt);
}

}  // namespace
}  // namespace TkPPDUpdating
