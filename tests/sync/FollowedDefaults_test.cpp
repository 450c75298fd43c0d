#include "sync/FollowedDefaults.h"

#include <gtest/gtest.h>

#include "backends/schemes/PlainICCProfile.h"
#include "tests/sync/CustomMediaPPD.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

namespace TkPPDUpdating::Testing {
namespace {

std::shared_ptr<const OrbICCProfile> profile(const std::string& qualifier) {
    return std::make_shared<const PlainICCProfile>("file:///p/" + qualifier + ".icc", qualifier,
                                                   std::nullopt);
}

PPDText withTypes(const PPDText& text, OrbCustomMediaTypes types) {
    return OrbPPDCustomMediaUpdater().contentsForContents_updatedWithCustomMediaTypes(
        text, std::move(types));
}

/// A PPD with these types whose defaults are the given choices.
std::shared_ptr<const PPDModelFile> PPDWithTypes(OrbCustomMediaTypes types,
                                                 std::string_view defaultType,
                                                 std::string_view defaultProfile = "Auto") {
    auto file = parsedPPD(customMediaLines(defaultType, defaultProfile));
    return PPDModelFile::fileWithText(withTypes(file->text(), std::move(types)));
}

std::string defaultOf(const PPDText& text, std::string_view option) {
    const auto file = PPDModelFile::fileWithText(text);
    return std::string(file->optionForName(option)->defaultChoiceName().value_or(""));
}

const OrbCustomMediaTypes kTypes = {mediaType("Gloss", "1", profile("qg")),
                                    mediaType("Canvas", "2", profile("qc"))};
const OrbCustomMediaTypes kTurned = {kTypes[1], kTypes[0]};

TEST(FollowedDefaultsTest, TheDefaultFollowsItsTypeByTheMediaID) {
    const auto before = PPDWithTypes(kTypes, "custom1");
    const auto result = defaultsFollowingMediaTypes(
        *before, withTypes(before->text(), {mediaType("Canvas", "2"), mediaType("Gloss 2", "1")}));
    EXPECT_EQ(defaultOf(result.text, "MediaType"), "custom2");
    EXPECT_TRUE(result.notes.empty());
}

TEST(FollowedDefaultsTest, TheDefaultFollowsItsTypeByTheName) {
    const auto before = PPDWithTypes({mediaType("B\xC3\xBCtten", "1"), kTypes[1]}, "custom1");
    const auto result = defaultsFollowingMediaTypes(
        *before, withTypes(before->text(), {kTypes[1], mediaType("B\xC3\xBCtten", "7")}));
    EXPECT_EQ(defaultOf(result.text, "MediaType"), "custom2");
}

TEST(FollowedDefaultsTest, OnlyTheLineOfTheDefaultChanges) {
    const auto before = PPDWithTypes(kTypes, "custom1");
    const PPDText after = withTypes(before->text(), kTurned);
    std::string expected = *after;
    const std::string line = "\n*DefaultMediaType: custom1\n";
    expected.replace(expected.find(line), line.size(), "\n*DefaultMediaType: custom2\n");
    EXPECT_EQ(*defaultsFollowingMediaTypes(*before, after).text, expected);
}

TEST(FollowedDefaultsTest, ADefaultThatDidNotMoveOrIsTheDriversStays) {
    for (const char* choice : {"custom1", "custom2", "Plain"}) {
        const auto before = PPDWithTypes(kTypes, choice);
        const PPDText added =
            withTypes(before->text(), {kTypes[0], kTypes[1], mediaType("New", "3")});
        EXPECT_EQ(defaultsFollowingMediaTypes(*before, added).text, added) << choice;
        EXPECT_EQ(defaultsFollowingMediaTypes(*before, before->text()).text, before->text());
    }
    const auto before = PPDWithTypes(kTypes, "Plain");
    const PPDText turned = withTypes(before->text(), kTurned);
    EXPECT_EQ(defaultsFollowingMediaTypes(*before, turned).text, turned);
}

TEST(FollowedDefaultsTest, WhereTheTypeIsGoneTheDriversFirstChoiceIsTheDefaultAndThatIsTold) {
    const auto before = PPDWithTypes(kTypes, "custom1");
    for (const OrbCustomMediaTypes& now : {OrbCustomMediaTypes(), OrbCustomMediaTypes{kTypes[1]}}) {
        const auto result = defaultsFollowingMediaTypes(*before, withTypes(before->text(), now));
        EXPECT_EQ(defaultOf(result.text, "MediaType"), "Plain");
        ASSERT_EQ(result.notes.size(), 1U);
        EXPECT_EQ(result.notes[0],
                  "the default Media Type \"Gloss\" is gone: it is \"Plain Paper\" now");
    }
}

TEST(FollowedDefaultsTest, AChoiceOfTheSameFormThatIsNoTypeOfTheBlockIsTheDrivers) {
    const auto file = parsedPPD(
        "*OpenUI *MediaType/Media Type: PickOne\n*DefaultMediaType: custom7\n"
        "*MediaType custom7/Seven: \"\"\n*CloseUI: *MediaType\n"
        "*OpenUI *ZrICCProfileId2/Profile: PickOne\n*DefaultZrICCProfileId2: Auto\n"
        "*ZrICCProfileId2 Auto/Automatic: \"\"\n*CloseUI: *ZrICCProfileId2\n");
    const PPDText after = withTypes(file->text(), kTypes);
    EXPECT_EQ(defaultsFollowingMediaTypes(*file, after).text, after);
}

TEST(FollowedDefaultsTest, TheDefaultProfileFollowsItsType) {
    const auto before = PPDWithTypes(kTypes, "Plain", "qg");
    const auto kept = defaultsFollowingMediaTypes(*before, withTypes(before->text(), kTurned));
    EXPECT_EQ(defaultOf(kept.text, "ZrICCProfileId2"), "qg");
    const auto moved = defaultsFollowingMediaTypes(
        *before, withTypes(before->text(), {kTypes[1], mediaType("Gloss", "1", profile("new"))}));
    EXPECT_EQ(defaultOf(moved.text, "ZrICCProfileId2"), "new");
    EXPECT_TRUE(moved.notes.empty());
    const auto gone = defaultsFollowingMediaTypes(*before, withTypes(before->text(), {kTypes[1]}));
    EXPECT_EQ(defaultOf(gone.text, "ZrICCProfileId2"), "Auto");
    EXPECT_EQ(gone.notes, std::vector<std::string>{
                              "the default Profile \"qg\" is gone: it is \"Automatic\" now"});
}

TEST(FollowedDefaultsTest, ADefaultThatNamesNoChoiceStays) {
    const auto before = PPDWithTypes(kTypes, "custom9", "none");
    const PPDText after = withTypes(before->text(), {});
    EXPECT_EQ(*defaultsFollowingMediaTypes(*before, after).text, *after);
}

TEST(FollowedDefaultsTest, AnOptionWithoutAChoiceOfTheDriverKeepsItsLine) {
    const auto file = parsedPPD(
        "*OpenUI *MediaType/Media Type: PickOne\n*DefaultMediaType: custom1\n"
        "*CloseUI: *MediaType\n*OpenUI *ZrICCProfileId2/Profile: PickOne\n"
        "*CloseUI: *ZrICCProfileId2\n");
    const auto before = PPDModelFile::fileWithText(withTypes(file->text(), kTypes));
    const PPDText after = withTypes(before->text(), {});
    EXPECT_EQ(*defaultsFollowingMediaTypes(*before, after).text, *after);
}

TEST(FollowedDefaultsTest, KeepsCarriageReturnsAndEveryLineOfTheDefaultIsSet) {
    auto before = PPDWithTypes(kTypes, "custom1");
    std::string text = *before->text() + "*DefaultMediaType: custom1\r\n";
    before = PPDModelFile::fileWithText(makePPDText(text));
    const auto result = defaultsFollowingMediaTypes(*before, withTypes(before->text(), kTurned));
    EXPECT_EQ(defaultOf(result.text, "MediaType"), "custom2");
    EXPECT_NE(result.text->find("*DefaultMediaType: custom2\r\n"), std::string::npos);
    EXPECT_EQ(result.text->find("*DefaultMediaType: custom1"), std::string::npos);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
