// What the guard refuses and accepts, told with texts made by hand.
#include "sync/UpdateGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "manager/ITkPPDLineOwnership.h"
#include "manager/OrbClassTable.h"
#include "tests/support/ApplicationUpdaters.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr const char* kBefore =
    "*PPD-Adobe: \"4.3\"\n"
    "*cupsVersion: 2.4\n"
    "*cupsLanguages: \"de fr\"\n"
    "*cupsFilter: \"a 0 b\"\n"
    "*ZrMaxSupportedResolution: 600\n"
    "*ZrDeviceCapabilities: Unknown\n"
    "*ZrAutoDuplexCapability: Unknown\n"
    "*ZrNonInstallableDuplex: Unknown\n"
    "*% a comment\n"
    "*OpenUI *MediaType/Media: PickOne\n"
    "*DefaultMediaType: Plain\n"
    "*MediaType Plain/Plain: \"<</MediaType(Plain)>>setpagedevice\"\n"
    "*MediaType Photo/Photo: \"\"\n"
    "*MediaType custom1/Felt: \"<</MediaType(custom1)>>setpagedevice\"\n"
    "*de.MediaType custom1/Felt: \"\"\n"
    "*CloseUI: *MediaType\n"
    "*OpenUI *ZrICCProfileId2/Profile: PickOne\n"
    "*DefaultZrICCProfileId2: Auto\n"
    "*ZrICCProfileId2 Auto/Auto: \"\"\n"
    "*ZrICCProfileId2 q0/felt: \"\"\n"
    "*CloseUI: *ZrICCProfileId2\n"
    "*OpenUI *ZrLowerTrayInstalled/Tray: Boolean\n"
    "*DefaultZrLowerTrayInstalled: False\n"
    "*ZrLowerTrayInstalled False/No: \"\"\n"
    "*ZrLowerTrayInstalled True/Yes: \"\"\n"
    "*CloseUI: *ZrLowerTrayInstalled\n"
    "*OpenGroup: ZrTwoSidedPrinting/Two-Sided\n"
    "*OpenUI *Duplex/Duplex: PickOne\n"
    "*DefaultDuplex: None\n"
    "*Duplex None/Off: \"\"\n"
    "*CloseUI: *Duplex\n"
    "*CloseGroup: ZrTwoSidedPrinting\n"
    "*OpenUI *PageSize/Size: PickOne\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4/A4: \"\"\n"
    "*PageSize A4.ZrDuplex/A4 (Duplex): \"\"\n"
    "*CloseUI: *PageSize\n"
    "*% Duplex <-> MediaType\n"
    "*UIConstraints: *Duplex None *MediaType Photo\n"
    "*UIConstraints: *PageSize A4 *MediaType Photo\n"
    "*Text: \"first\n"
    "second\"\n"
    "*End\n"
    "*cupsICCProfile ..q0/felt: \"/p/felt.icc\"\n"
    "*ZrChoiceProperties MediaType.custom1: \"MediaID=f;ParentMediaID=3;ZrICCProfileId2=q0;\"\n"
    "*ZrMediaTypeCategory custom/Custom: \"custom1\"\n";

using Edits = std::vector<std::pair<std::string, std::string>>;

/// The text with each first part, which must be there, replaced by the second.
std::string edited(std::string text, const Edits& edits) {
    for (const auto& [from, to] : edits) {
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        if (at != std::string::npos) {
            text.replace(at, from.size(), to);
        }
    }
    return text;
}

std::vector<std::unique_ptr<ITkPPDUpdater>> instancesOf(const std::vector<std::string>& names) {
    std::vector<std::unique_ptr<ITkPPDUpdater>> instances;
    for (const std::string& name : names) {
        const OrbClass* const updaterClass = OrbClassFromName(name);
        EXPECT_TRUE(updaterClass) << name;
        instances.push_back(updaterClass->newInstance());
    }
    return instances;
}

/// The updaters that apply to the text above.
const std::vector<std::string>& allNames() {
    static const std::vector<std::string> kNames = {
        "OrbPPDCustomMediaUpdater", "OrbPPDDeviceCapabilitiesUpdater",
        "OrbPPDLowerTrayInstalledUpdater", "OrbPPDMaxResolutionUpdater",
        "OrbPPDNonInstallableDuplexUpdater"};
    return kNames;
}

std::string reasonAfter(const Edits& edits, const std::vector<std::string>& names = allNames()) {
    return UpdateGuard::reasonNotToWrite(kBefore, edited(kBefore, edits), instancesOf(names))
        .value_or("accepted");
}

struct Change {
    const char* name;
    Edits edits;
    const char* reason = "accepted";

    friend void PrintTo(const Change& change, std::ostream* stream) { *stream << change.name; }
};

std::string nameOfChange(const testing::TestParamInfo<Change>& info) {
    return info.param.name;
}

class AllowedChange : public testing::TestWithParam<Change> {};

TEST_P(AllowedChange, IsAccepted) {
    EXPECT_EQ(reasonAfter(GetParam().edits), "accepted");
}

constexpr const char* kResolution = "*ZrMaxSupportedResolution: 600\n";
constexpr const char* kCloseMedia = "*CloseUI: *MediaType\n";
constexpr const char* kEarlierChoice =
    "*MediaType custom1/Felt: \"<</MediaType(custom1)>>setpagedevice\"\n"
    "*de.MediaType custom1/Felt: \"\"\n";
constexpr const char* kEarlierBlock =
    "*cupsICCProfile ..q0/felt: \"/p/felt.icc\"\n"
    "*ZrChoiceProperties MediaType.custom1: \"MediaID=f;ParentMediaID=3;ZrICCProfileId2=q0;\"\n"
    "*ZrMediaTypeCategory custom/Custom: \"custom1\"\n";

/// The block of one new type in the place of the earlier one, with something else in it.
Edits newBlock(const Edits& otherwise = {}) {
    Edits edits = {{kEarlierChoice,
                    "*MediaType custom1/Silk: \"<</MediaType(custom1)>>setpagedevice\"\n"
                    "*de.MediaType custom1/Silk: \"\"\n*fr.MediaType custom1/Silk: \"\"\n"},
                   {"*ZrICCProfileId2 q0/felt: \"\"\n", "*ZrICCProfileId2 q1/silk: \"\"\n"},
                   {kEarlierBlock,
                    "*cupsICCProfile ..q1/silk: \"/p/silk.icc\"\n"
                    "*de.cupsICCProfile ..q1/silk: \"\"\n"
                    "*ZrChoiceProperties MediaType.custom1: \"MediaID=s;ZrICCProfileId2=q1;\"\n"
                    "*ZrMediaTypeCategory custom/Custom: \"custom1\"\n"}};
    edits.insert(edits.end(), otherwise.begin(), otherwise.end());
    return edits;
}

std::string twoTypesWithOneProfile() {
    return "*cupsICCProfile ..q1/silk: \"/p/silk.icc\"\n"
           "*cupsICCProfile ..q1/silk: \"/p/silk.icc\"\n"
           "*ZrChoiceProperties MediaType.custom1: \"MediaID=s;ZrICCProfileId2=q1;\"\n"
           "*ZrChoiceProperties MediaType.custom2: \"MediaID=t;ZrICCProfileId2=q1;\"\n"
           "*ZrMediaTypeCategory custom/Custom: \"custom1 custom2\"\n";
}

INSTANTIATE_TEST_SUITE_P(
    UpdateGuard, AllowedChange,
    testing::Values(
        Change{"NoneAtAll", {}},
        Change{"AnAttributesValue",
               {{"*ZrMaxSupportedResolution: 600", "*ZrMaxSupportedResolution: 1200 dpi: x/y"}}},
        Change{"TheDefaultOfAnUpdatersOption",
               {{"*DefaultZrLowerTrayInstalled: False", "*DefaultZrLowerTrayInstalled: True"}}},
        Change{"ALineOf255Bytes",
               {{kResolution, "*ZrMaxSupportedResolution: " + std::string(228, '1') + "\n"}}},
        Change{"ABlankLineAtTheEnd",
               {{"*ZrMediaTypeCategory custom/Custom: \"custom1\"\n",
                 "*ZrMediaTypeCategory custom/Custom: \"custom1\"\n\n"}}},
        Change{"AnotherLineEnd", {{"*% a comment\n", "*% a comment\r\n"}}},
        Change{"TheTwoSidedGroupAndWhatGoesWithIt",
               {{"*OpenGroup: ZrTwoSidedPrinting/Two-Sided\n*OpenUI *Duplex/Duplex: PickOne\n"
                 "*DefaultDuplex: None\n*Duplex None/Off: \"\"\n*CloseUI: *Duplex\n"
                 "*CloseGroup: ZrTwoSidedPrinting\n",
                 ""},
                {"*PageSize A4.ZrDuplex/A4 (Duplex): \"\"\n", ""},
                {"*% Duplex <-> MediaType\n*UIConstraints: *Duplex None *MediaType Photo\n", ""},
                {"*ZrNonInstallableDuplex: Unknown", "*ZrNonInstallableDuplex: Not Installed"}}},
        Change{
            "AnEarlierRunsMediaThatGo",
            {{kEarlierChoice, ""}, {"*ZrICCProfileId2 q0/felt: \"\"\n", ""}, {kEarlierBlock, ""}}},
        Change{"ANewBlockOfMedia", newBlock()},
        Change{"TwoTypesWithOneProfile",
               {{kEarlierChoice,
                 "*MediaType custom1/Silk: \"<</MediaType(custom1)>>setpagedevice\"\n"
                 "*MediaType custom2/Satin: \"<</MediaType(custom2)>>setpagedevice\"\n"},
                {"*ZrICCProfileId2 q0/felt: \"\"\n",
                 "*ZrICCProfileId2 q1/silk: \"\"\n*ZrICCProfileId2 q1/silk: \"\"\n"},
                {kEarlierBlock, twoTypesWithOneProfile()}}},
        Change{"TheDefaultThatFollowsItsType",
               newBlock({{"*DefaultMediaType: Plain", "*DefaultMediaType: custom1"},
                         {"*DefaultZrICCProfileId2: Auto", "*DefaultZrICCProfileId2: q1"}})},
        Change{"ACategoryThatIsWrapped",
               {{kEarlierChoice,
                 "*MediaType custom1/Silk: \"<</MediaType(custom1)>>setpagedevice\"\n"},
                {"*ZrICCProfileId2 q0/felt: \"\"\n", ""},
                {kEarlierBlock,
                 "*ZrChoiceProperties MediaType.custom1: \"\"\n"
                 "*ZrMediaTypeCategory custom/Custom: \"custom1\ncustom2\"\n*End\n"}}}),
    nameOfChange);

class ForbiddenChange : public testing::TestWithParam<Change> {};

TEST_P(ForbiddenChange, IsRefusedWithItsReason) {
    EXPECT_EQ(reasonAfter(GetParam().edits), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    OfOtherLines, ForbiddenChange,
    testing::Values(
        Change{"ALineIsLost",
               {{"*UIConstraints: *PageSize A4 *MediaType Photo\n", ""}},
               "it would lose a line of UIConstraints"},
        Change{"ACommentIsLost", {{"*% a comment\n", ""}}, "it would lose a line of no keyword"},
        Change{"TheLastLinesAreLost",
               {{kEarlierBlock, ""}, {"*Text: \"first\nsecond\"\n*End\n", ""}},
               "it would lose a line of Text"},
        Change{"TwoLinesChangePlaces",
               {{"*cupsFilter: \"a 0 b\"\n", ""},
                {kResolution, "*ZrMaxSupportedResolution: 600\n*cupsFilter: \"a 0 b\"\n"},
                {"*cupsLanguages: \"de fr\"\n", "*cupsLanguages: \"de fr\"\n"},
                {"*% a comment\n", "*% a comment\n"},
                {"*ZrDeviceCapabilities: Unknown\n", "*cupsFilter: \"a 0 b\"\n"}},
               "it would get a new line of cupsFilter"},
        Change{"ALineIsThereTwice",
               {{"*cupsFilter: \"a 0 b\"\n", "*cupsFilter: \"a 0 b\"\n*cupsFilter: \"a 0 b\"\n"}},
               "it would get a new line of cupsFilter"},
        Change{"ANewKeyword",
               {{kResolution, "*ZrMaxSupportedResolution: 600\n*ZrNew: 1\n"}},
               "it would get a new line of ZrNew"},
        Change{
            "ANewCommentLine", {{kResolution, "*% x\n"}}, "it would get a new line of no keyword"},
        Change{"AKeywordBehindACarriageReturn",
               {{kResolution, "*ZrMaxSupportedResolution: 600\r*ZrNew: 1\n"}},
               "it would get a new line of ZrNew"},
        Change{"AProgramBehindACarriageReturnOfAComment",
               {{"*% a comment\n", "*% a comment\r*cupsFilter: \"x\"\n"}},
               "it would get a new line of cupsFilter"},
        Change{"AValueThatSwallowsTheNextLine",
               {{kResolution, "*ZrMaxSupportedResolution: \"6\n"}},
               "a new line of ZrMaxSupportedResolution would go on beyond its end"},
        Change{"AValueOfSeveralLinesIsCut",
               {{"second\"\n", "second\"x\n"}},
               "the line of Text would be another"},
        Change{"AnAttributeWithAnOptionKeyword",
               {{kResolution, "*ZrMaxSupportedResolution x/y: 600\n"}},
               "it would get a new line of ZrMaxSupportedResolution x"},
        Change{"AnAttributeTwice",
               {{kResolution, "*ZrMaxSupportedResolution: 1\n*ZrMaxSupportedResolution: 2\n"}},
               "ZrMaxSupportedResolution would be there twice"},
        Change{"AnAttributeIsLost",
               {{"*ZrMaxSupportedResolution: 600\n", ""}},
               "it would lose a line of ZrMaxSupportedResolution"},
        Change{"AnAttributeWithoutAColon",
               {{kResolution, "*ZrMaxSupportedResolution\n"}},
               "a new line of ZrMaxSupportedResolution would have no value"},
        Change{"ATabInAValue",
               {{kResolution, "*ZrMaxSupportedResolution: 6\t0\n"}},
               "a new line of ZrMaxSupportedResolution would hold a control character"},
        Change{"ALineOf256Bytes",
               {{kResolution, "*ZrMaxSupportedResolution: " + std::string(229, '1') + "\n"}},
               "a new line of ZrMaxSupportedResolution would be 256 bytes long"}),
    nameOfChange);

INSTANTIATE_TEST_SUITE_P(
    OfDefaults, ForbiddenChange,
    testing::Values(
        Change{"TheUsersDefault",
               {{"*DefaultPageSize: A4", "*DefaultPageSize: A4.ZrDuplex"}},
               "the default of PageSize would be lost, which belongs to the user"},
        Change{"TheUsersDefaultGoes",
               {{"*DefaultPageSize: A4\n", ""}},
               "the default of PageSize would be lost, which belongs to the user"},
        Change{"AnUpdatersDefaultGoes",
               {{"*DefaultZrLowerTrayInstalled: False\n", ""}},
               "the default of ZrLowerTrayInstalled would be lost, which belongs to the user"},
        Change{"AnUpdatersDefaultTwice",
               {{"*DefaultZrLowerTrayInstalled: False\n",
                 "*DefaultZrLowerTrayInstalled: False\n*DefaultZrLowerTrayInstalled: True\n"}},
               "it would get a new line of DefaultZrLowerTrayInstalled"},
        Change{"ADefaultWithoutItsChoice",
               {{"*DefaultZrLowerTrayInstalled: False", "*DefaultZrLowerTrayInstalled: Maybe"}},
               "the default of ZrLowerTrayInstalled would name a choice that there is not"},
        Change{"TheDefaultOfADuplexOptionThatStays",
               {{"*DefaultDuplex: None\n", ""}},
               "the default of Duplex would be lost, which belongs to the user"},
        Change{"TheTypeThatIsTheDefaultGoes",
               newBlock({{"*DefaultMediaType: Plain", "*DefaultMediaType: custom2"}}),
               "the default of MediaType would name a choice that there is not"}),
    nameOfChange);

INSTANTIATE_TEST_SUITE_P(
    OfChoices, ForbiddenChange,
    testing::Values(
        Change{"ADriversChoiceGoes",
               {{"*MediaType Photo/Photo: \"\"\n", ""}},
               "it would lose a line of MediaType Photo"},
        Change{"ADriversChoiceGetsOtherCode",
               {{"*MediaType Photo/Photo: \"\"", "*MediaType Photo/Photo: \"run\""}},
               "the line of MediaType Photo would be another"},
        Change{"ADriversChoiceGetsAnotherText",
               {{"*MediaType Photo/Photo: \"\"", "*MediaType Photo/Foto: \"\""}},
               "the line of MediaType Photo would be another"},
        Change{"ADriversProfileGoes",
               {{"*ZrICCProfileId2 Auto/Auto: \"\"\n", ""}},
               "it would lose a line of ZrICCProfileId2 Auto"},
        Change{"ForeignCodeBehindAColonInTheText",
               newBlock({{"*MediaType custom1/Silk: \"<<",
                          "*MediaType custom1/Silk:  (/etc/passwd)(r)file pop = % : \"<<"}}),
               "it would get a new line of MediaType custom1"},
        Change{"CodeOfAnotherChoice",
               newBlock({{"(custom1)>>setpagedevice", "(custom2)>>setpagedevice"}}),
               "it would get a new line of MediaType custom1"},
        Change{"CodeWithoutQuotes",
               newBlock({{"Silk: \"<</MediaType(custom1)>>setpagedevice\"",
                          "Silk: <</MediaType(custom1)>>setpagedevice"}}),
               "it would get a new line of MediaType custom1"},
        Change{"ALineFeedInTheText", newBlock({{"custom1/Silk: \"<<", "custom1/a<0A>b: \"<<"}}),
               "a new line of MediaType custom1 would hold a control character"},
        Change{
            "ATranslationWithCode",
            newBlock({{"*fr.MediaType custom1/Silk: \"\"", "*fr.MediaType custom1/Silk: \"x\""}}),
            "it would get a new line of fr.MediaType custom1"},
        Change{"ATranslationOfALanguageThatThePPDHasNot",
               newBlock({{"*fr.MediaType custom1", "*it.MediaType custom1"}}),
               "it would get a new line of it.MediaType custom1"},
        Change{"AChoiceThatTheCategoryDoesNotName",
               newBlock({{kCloseMedia,
                          "*MediaType custom2/x: \"<</MediaType(custom2)>>setpagedevice\"\n"
                          "*CloseUI: *MediaType\n"}}),
               "it would get a new line of MediaType custom2"},
        Change{
            "AChoiceBehindTheEndOfItsOption",
            newBlock({{"*MediaType custom1/Silk: \"<</MediaType(custom1)>>setpagedevice\"\n", ""},
                      {kCloseMedia,
                       "*CloseUI: *MediaType\n"
                       "*MediaType custom1/Silk: \"<</MediaType(custom1)>>setpagedevice\"\n"}}),
            "it would get a new line of MediaType custom1"},
        Change{"AProfileThatTheDriverHas",
               newBlock({{"*ZrICCProfileId2 q1/silk", "*ZrICCProfileId2 Auto/silk"},
                         {"*cupsICCProfile ..q1", "*cupsICCProfile ..Auto"},
                         {"*de.cupsICCProfile ..q1", "*de.cupsICCProfile ..Auto"},
                         {"ZrICCProfileId2=q1;", "ZrICCProfileId2=Auto;"}}),
               "ZrICCProfileId2 Auto would be there twice"},
        Change{"AProfileThatTheDriverHasInOtherLetters",
               newBlock({{"*ZrICCProfileId2 q1/silk", "*ZrICCProfileId2 AUTO/silk"},
                         {"*cupsICCProfile ..q1", "*cupsICCProfile ..AUTO"},
                         {"*de.cupsICCProfile ..q1", "*de.cupsICCProfile ..AUTO"},
                         {"ZrICCProfileId2=q1;", "ZrICCProfileId2=AUTO;"}}),
               "ZrICCProfileId2 AUTO would be there twice"},
        Change{"TwoFilesOfOneProfile",
               newBlock({{"*cupsICCProfile ..q1/silk: \"/p/silk.icc\"\n",
                          "*cupsICCProfile ..q1/silk: \"/p/silk.icc\"\n"
                          "*cupsICCProfile ..q1/silk: \"/p/other.icc\"\n"}}),
               "cupsICCProfile ..q1 would be there twice"},
        Change{"AProfileWithCode", newBlock({{"q1/silk: \"\"", "q1/silk: \"run\""}}),
               "it would get a new line of ZrICCProfileId2 q1"},
        Change{"AProfileThatNobodyNames", newBlock({{"ZrICCProfileId2=q1;", ""}}),
               "it would get a new line of ZrICCProfileId2 q1"},
        Change{"AProfileWithALongName",
               newBlock({{"*ZrICCProfileId2 q1/",
                          "*ZrICCProfileId2 q12345678901234567890123456789"
                          "0123456789/"},
                         {"*cupsICCProfile ..q1/",
                          "*cupsICCProfile ..q123456789012345678901234567"
                          "890123456789/"},
                         {"*de.cupsICCProfile ..q1/",
                          "*de.cupsICCProfile ..q123456789012345678901"
                          "234567890123456789/"},
                         {"ZrICCProfileId2=q1;",
                          "ZrICCProfileId2=q123456789012345678901234567890123456789;"}}),
               "a new line of a keyword that cannot be shown would have a keyword that is none"},
        Change{"PropertiesThatNameADriversProfile",
               newBlock({{"MediaID=s;ZrICCProfileId2=q1;",
                          "MediaID=s;ZrICCProfileId2=Auto;ParentMediaID=3;ZrICCProfileId2=q1;"}}),
               "it would get a new line of ZrChoiceProperties MediaType.custom1"},
        Change{"OtherProperties", newBlock({{"MediaID=s;", "MediaID=a=b;c;"}}),
               "it would get a new line of ZrChoiceProperties MediaType.custom1"}),
    nameOfChange);

const std::string kInstallableBlock =
    "\n*OpenGroup: InstallableOptions/Installable Options\n"
    "*OpenUI *ZrAutoDuplexerInstalled/Automatic Duplexer: Boolean\n"
    "*DefaultZrAutoDuplexerInstalled: False\n"
    "*ZrAutoDuplexerInstalled False/Not Installed: \"\"\n"
    "*ZrAutoDuplexerInstalled True/Installed: \"\"\n"
    "*CloseUI: *ZrAutoDuplexerInstalled\n"
    "*CloseGroup: InstallableOptions\n"
    "*UIConstraints: *Duplex *ZrAutoDuplexerInstalled False\n";

TEST(UpdateGuard, AnInstallableBlockMayComeWithTheUpdaterThatHasIt) {
    const auto instance = instancesOf({"OrbPPDNonInstallableDuplexUpdater"});
    const std::string after = kBefore + kInstallableBlock;
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, after, instance), std::nullopt);
    EXPECT_EQ(
        UpdateGuard::reasonNotToWrite(kBefore, after, instancesOf({"OrbPPDCustomMediaUpdater"})),
        "it would get a new line of OpenGroup");
    EXPECT_EQ(
        UpdateGuard::reasonNotToWrite(
            kBefore, edited(after, {{"Installed: \"\"\n*CloseUI", "Installed: \"x\"\n*CloseUI"}}),
            instance),
        "it would get a new line of ZrAutoDuplexerInstalled True");
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, after + kInstallableBlock, instance),
              "OpenUI *ZrAutoDuplexerInstalled would be there twice");
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(after, after + kInstallableBlock, instance),
              "OpenUI *ZrAutoDuplexerInstalled would be there twice");
}

TEST(UpdateGuard, NoGroupMayOpenInsideOfAnother) {
    const auto instance = instancesOf({"OrbPPDNonInstallableDuplexUpdater"});
    const std::string group = edited(
        kInstallableBlock, {{"*UIConstraints: *Duplex *ZrAutoDuplexerInstalled False\n", ""}});
    const std::string open = std::string(kBefore) + "*OpenGroup: Other/Other\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(open, open + group, instance),
              "a group would open where another one is open");
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(open, open + kInstallableBlock, instance),
              "it would get a new line of UIConstraints");
    const std::string closed = open + "*CloseGroup: Other\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(closed, closed + kInstallableBlock, instance),
              std::nullopt);
    // One that the driver has inside of another is no reason.
    const std::string inside = open + "*OpenGroup: Inner\n*CloseGroup: Inner\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(inside, inside + group, instance), std::nullopt);
}

TEST(UpdateGuard, AGroupKeepsTheOpeningThatIsItsFirst) {
    const auto instance = instancesOf({"OrbPPDNonInstallableDuplexUpdater"});
    const std::string group =
        "*OpenGroup: InstallableOptions/Driver's\n*OpenUI *Unit/Unit: Boolean\n"
        "*Unit True/Yes: \"\"\n*CloseUI: *Unit\n*CloseGroup: InstallableOptions\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore + group, kBefore + group + kInstallableBlock,
                                            instance),
              std::nullopt);
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore + group, kBefore + kInstallableBlock + group,
                                            instance),
              "a new line of OpenGroup would stand before the one of InstallableOptions that "
              "there is");
    const std::string other = edited(group, {{"Group: Ins", "Group: OtherIns"}});
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore + other, kBefore + kInstallableBlock + other,
                                            instance),
              std::nullopt);
}

TEST(UpdateGuard, AValueThatGoesOnOverLinesOfOthersDoesNotGo) {
    const std::string wrapped = "*ZrMaxSupportedResolution: \"600\n300\"\n*End\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(edited(kBefore, {{kResolution, wrapped}}), kBefore,
                                            instancesOf(allNames())),
              std::nullopt);
    for (const char* const broken :
         {"*ZrMaxSupportedResolution: 6\"\n*Other: \"a\"\n*End: 0\"\n",
          "*ZrMaxSupportedResolution: 6\"\n*Other: a\n*More: \"b\n",
          "*ZrMaxSupportedResolution: \"6\n*Other: \"a\"\n*More: b\"\n"}) {
        EXPECT_EQ(UpdateGuard::reasonNotToWrite(edited(kBefore, {{kResolution, broken}}), kBefore,
                                                instancesOf(allNames())),
                  "it would lose a line of ZrMaxSupportedResolution")
            << broken;
    }
}

TEST(UpdateGuard, NoValueMayStayOpenForTheNextUpdate) {
    // To libcups the constraint is a line of its own. What goes with it is a line feed, and with
    // that the place where the value of the next line opens.
    const std::string head = "*PPD-Adobe: \"4.3\"\n*Note: one\r";
    const std::string constraint = "*UIConstraints: *Duplex None *MediaType Photo\n";
    const std::string value = "*Text: \"0\n*Other: \"1\n";
    const auto updaters = instancesOf(allNames());
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(head + constraint + value, head + value, updaters),
              "a quoted value would never close");
    const std::string ended = "*PPD-Adobe: \"4.3\"\n*Note: one\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(ended + constraint + value, ended + value, updaters),
              std::nullopt);
}

TEST(UpdateGuard, ALineWithACarriageReturnInItStaysAsItIs) {
    // To libcups the constraint is a line of its own, and goes. The updaters read the line as one:
    // what follows then stands behind the carriage return, and its quote in another line.
    const std::string constraint = "*UIConstraints: *Duplex None *MediaType Photo";
    const std::string head = "*PPD-Adobe: \"4.3\"\n";
    const std::string value = "*Text: \"0\n*Other: \"1\n*X: \"a\"\n";
    const auto updaters = instancesOf(allNames());
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(head + "*Note: one\r" + constraint + "\n" + value,
                                            head + "*Note: one\r" + value, updaters),
              "a line with a carriage return in it would be another");
    for (const std::string lines : {"*Note: one\r\n", "*Note: one\r\r\n", "*Note: one\r*A: 2\n"}) {
        EXPECT_EQ(UpdateGuard::reasonNotToWrite(head + lines + constraint + "\r\n" + value,
                                                head + lines + value, updaters),
                  std::nullopt)
            << lines;
    }
    const std::string lineFeeds = edited(kBefore, {{"first\nsecond", "first"}});
    std::string carriageReturns = lineFeeds;
    std::ranges::replace(carriageReturns, '\n', '\r');
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(lineFeeds, carriageReturns, updaters),
              "a line with a carriage return in it would be another");
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(carriageReturns, carriageReturns + "\n", updaters),
              std::nullopt);
}

TEST(UpdateGuard, ALineOfBlanksIsNoLongerThanALine) {
    const std::string longest = std::string(254, ' ') + "\t\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, kBefore + longest, {}), std::nullopt);
    const std::string longer = " " + longest;
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, kBefore + longer, {}),
              "a line of blanks would be 256 bytes long");
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore + longer, kBefore + longer + longer, {}),
              std::nullopt);
    // Not of blanks alone.
    const std::string comment = "*%" + std::string(300, ' ') + "x\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore + comment, kBefore + comment + "\n", {}),
              std::nullopt);
}

TEST(UpdateGuard, ATranslationInALanguageThatIsNoneIsRefused) {
    const std::string languages = "*cupsLanguages: \"de fr\"";
    const std::string before = edited(kBefore, {{languages, "*cupsLanguages: \"de fr en/de\""}});
    const auto withTranslation = [&](const std::string& language) {
        auto edits = newBlock();
        edits.emplace_back(kCloseMedia,
                           "*" + language + ".MediaType custom1/Silk: \"\"\n" + kCloseMedia);
        return edits;
    };
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, edited(before, withTranslation("en/de")),
                                            instancesOf(allNames())),
              "a new line of en/de.MediaType custom1 would have a keyword that is none");
}

TEST(UpdateGuard, OnlyTheCategoryOfMediaGoesOnOverLines) {
    EXPECT_EQ(reasonAfter(newBlock({{"\"/p/silk.icc\"", "\"/p/silk\n.icc\""}})),
              "it would get a new line of cupsICCProfile ..q1");
}

TEST(UpdateGuard, ACategoryIsNoLongerThanLibcupsReads) {
    const auto reasonOfLines = [](std::size_t count) {
        std::string category = "*ZrMediaTypeCategory custom/Custom: \"custom1";
        for (std::size_t line = 0; line < count; ++line) {
            category += "\n" + std::string(249, 'x');
        }
        return reasonAfter(newBlock(
            {{"*ZrMediaTypeCategory custom/Custom: \"custom1\"\n", category + "\"\n*End\n"}}));
    };
    EXPECT_EQ(reasonOfLines(1048), "accepted");
    // 250 bytes each, which with the first line are more than 256 KiB.
    EXPECT_THAT(reasonOfLines(1049), testing::HasSubstr("bytes long"));
}

TEST(UpdateGuard, OfAPageSizeAllGoesOrNothing) {
    const std::string size = "*PageSize A4.ZrDuplex/A4 (Duplex): \"\"\n";
    const std::string dimension = "*PaperDimension A4.ZrDuplex/A4 (Duplex): \"595 842\"\n";
    const auto updaters = instancesOf(allNames());
    const std::string before = kBefore + dimension;
    const std::string without = edited(kBefore, {{size, ""}});
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, without, updaters), std::nullopt);
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, kBefore, updaters),
              "it would lose a line of PaperDimension A4.ZrDuplex, and keep one of PageSize");
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, without + dimension, updaters),
              "it would lose a line of PageSize A4.ZrDuplex, and keep one of PaperDimension");
}

TEST(UpdateGuard, WhatAnUpdaterThatDidNotRunOwnsIsNotToChange) {
    EXPECT_EQ(reasonAfter({{kResolution, "*ZrMaxSupportedResolution: 1200\n"}},
                          {"OrbPPDCustomMediaUpdater"}),
              "the line of ZrMaxSupportedResolution would be another");
    EXPECT_EQ(reasonAfter(newBlock(), {"OrbPPDMaxResolutionUpdater"}),
              "the line of MediaType custom1 would be another");
    EXPECT_EQ(reasonAfter({{"*UIConstraints: *Duplex None *MediaType Photo\n", ""}},
                          {"OrbPPDMaxResolutionUpdater"}),
              "it would lose a line of UIConstraints");
}

TEST(UpdateGuard, ADriversChoiceOfTheSameNameIsNotOverwritten) {
    // The driver has a choice "custom2" that no category names; a run adds another of that name.
    const std::string before = edited(
        kBefore, {{kCloseMedia, "*MediaType Custom2/Driver: \"driver\"\n*CloseUI: *MediaType\n"}});
    const std::string after =
        edited(before, {{"*MediaType Photo/Photo: \"\"\n",
                         "*MediaType Photo/Photo: \"\"\n"
                         "*MediaType custom2/x: \"<</MediaType(custom2)>>setpagedevice\"\n"},
                        {"Custom: \"custom1\"\n", "Custom: \"custom1 custom2\"\n"}});
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, after, instancesOf(allNames())),
              "MediaType custom2 would be there twice");
}

TEST(UpdateGuard, OnlyTheGroupOfThatNameGoes) {
    const std::string before = edited(
        kBefore, {{"*OpenGroup: ZrTwoSidedPrinting/", "*OpenGroup: ZrTwoSidedPrintingMore/"}});
    const std::size_t group = before.find("*OpenGroup:");
    const std::size_t end = before.find("*OpenUI *PageSize");
    const std::string after = before.substr(0, group) + before.substr(end);
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, after, instancesOf(allNames())),
              "it would lose a line of OpenGroup");
}

TEST(UpdateGuard, AGroupThatEndsWithAnotherNameStays) {
    // Each of two updaters takes the first such group away.
    const std::string start = kBefore;
    const std::size_t opens = start.find("*OpenGroup:");
    const std::string group = start.substr(opens, start.find("*OpenUI *PageSize") - opens);
    const auto reasonForName = [&](const std::string& name, const std::string& goes) {
        const std::string first = "*OpenGroup: ZrTwoSidedPrinting/Two\n*CloseGroup: " + name + "\n";
        return UpdateGuard::reasonNotToWrite(edited(start, {{"*% a comment\n", first}}),
                                             edited(start, {{"*% a comment\n", ""}, {goes, ""}}),
                                             instancesOf(allNames()));
    };
    EXPECT_EQ(reasonForName("ZrTwoSidedPrintingMore", group), "it would lose a line of OpenGroup");
    EXPECT_EQ(reasonForName("ZrTwoSidedPrintingMore", ""), "it would lose a line of OpenGroup");
    EXPECT_EQ(reasonForName("ZrTwoSidedPrinting", ""), std::nullopt);
}

TEST(UpdateGuard, AConstraintThatEndsWithTheOptionGoesInFrontOfALineFeedOnly) {
    const std::string constraint = "*UIConstraints: *MediaType Photo *Duplex";
    const auto reasonWithEnd = [&](const std::string& end, const std::string& rest) {
        const std::string start = kBefore;
        return UpdateGuard::reasonNotToWrite(start + constraint + end + rest, start + rest,
                                             instancesOf(allNames()));
    };
    EXPECT_EQ(reasonWithEnd("\n", "*A: 1\n"), std::nullopt);
    EXPECT_EQ(reasonWithEnd(" None\r\n", "*A: 1\r\n"), std::nullopt);
    EXPECT_EQ(reasonWithEnd("\r\n", "*A: 1\r\n"), "it would lose a line of UIConstraints");
    EXPECT_EQ(reasonWithEnd("\r\n", ""), "it would lose a line of UIConstraints");
}

TEST(UpdateGuard, AChoiceOutsideOfItsOptionStays) {
    const std::string choice = "*PageSize A5.ZrDuplex/A5 (Duplex): \"\"\n";
    const std::string opening = "*OpenUI *PageSize/Size: PickOne\n";
    const auto reasonWithChoice = [&](const std::string& place, const std::string& replaced) {
        const std::string before = edited(kBefore, {{place, replaced}});
        return UpdateGuard::reasonNotToWrite(before, edited(before, {{choice, ""}}),
                                             instancesOf(allNames()));
    };
    const std::string outside =
        "it would lose a line of PageSize A5.ZrDuplex that stands outside of its option";
    EXPECT_EQ(reasonWithChoice(opening, choice + opening), outside);
    EXPECT_EQ(reasonWithChoice(opening, opening + choice), std::nullopt);
    // Where no line opens the option, libcups does, with the first of its choices.
    EXPECT_EQ(reasonWithChoice(opening, choice), outside);
}

TEST(UpdateGuard, AChoiceOfThePageRegionOutsideOfItsOptionStays) {
    const std::string option =
        "*OpenUI *PageRegion/Region: PickOne\n*DefaultPageRegion: A4\n"
        "*PageRegion A4/A4: \"\"\n";
    const std::string closing = "*CloseUI: *PageRegion\n";
    const std::string choice = "*PageRegion A5.ZrDuplex/A5 (Duplex): \"\"\n";
    const std::string place = "*OpenUI *MediaType";
    const auto reasonWithLines = [&](const std::string& lines) {
        const std::string before = edited(kBefore, {{place, lines + place}});
        return UpdateGuard::reasonNotToWrite(before, edited(before, {{choice, ""}}),
                                             instancesOf(allNames()));
    };
    const std::string outside =
        "it would lose a line of PageRegion A5.ZrDuplex that stands outside of its option";
    EXPECT_EQ(reasonWithLines(option + choice + closing), std::nullopt);
    EXPECT_EQ(reasonWithLines(choice + option + closing), outside);
    EXPECT_EQ(reasonWithLines(option + closing + choice), outside);
    EXPECT_EQ(reasonWithLines(choice), outside);
}

TEST(UpdateGuard, TheGroupGoesAsAWhole) {
    // A second opening, so that what is behind it stays in the group when one of them goes.
    const std::string opening = "*OpenGroup: ZrTwoSidedPrinting/Two-Sided\n";
    const std::string before =
        edited(kBefore, {{"*DefaultDuplex: None\n", opening + "*Mine: 1\n*DefaultDuplex: None\n"}});
    const auto reasonWithout = [&](const std::string& line) {
        return UpdateGuard::reasonNotToWrite(before, edited(before, {{opening, ""}, {line, ""}}),
                                             instancesOf(allNames()));
    };
    EXPECT_EQ(reasonWithout("*Mine: 1\n"), "it would lose a line of OpenGroup");
    EXPECT_EQ(reasonWithout(""), "it would lose a line of OpenGroup");
    // A line of it may stand outside, too.
    const std::string comment = "*% a comment\n";
    const std::string twice = edited(kBefore, {{opening, opening + comment}});
    const std::size_t opens = twice.find(opening);
    const std::size_t end = twice.find("*OpenUI *PageSize");
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(twice, twice.substr(0, opens) + twice.substr(end),
                                            instancesOf(allNames())),
              std::nullopt);
    EXPECT_EQ(
        UpdateGuard::reasonNotToWrite(twice, twice.substr(0, opens) + comment + twice.substr(end),
                                      instancesOf(allNames())),
        "it would lose a line of OpenGroup");
}

TEST(UpdateGuard, AnAttributeLosesItsTranslationsInTheLanguagesOfThePPD) {
    const auto reasonForLanguage = [](const std::string& language) {
        const std::string line = "*" + language + ".ZrMaxSupportedResolution: x\n";
        return UpdateGuard::reasonNotToWrite(edited(kBefore, {{kResolution, kResolution + line}}),
                                             kBefore, instancesOf(allNames()));
    };
    for (const std::string language : {"de", "fr", "en"}) {
        EXPECT_EQ(reasonForLanguage(language), std::nullopt) << language;
    }
    for (const std::string language : {"it", "", "d", "de fr"}) {
        EXPECT_EQ(reasonForLanguage(language).value_or("accepted").substr(0, 23),
                  "it would lose a line of")
            << language;
    }
}

TEST(UpdateGuard, AnOptionMayNotLoseItsEndWithTheGroup) {
    // The group closes before the option that it opened does.
    const std::string before = edited(
        kBefore, {{"*CloseUI: *Duplex\n*CloseGroup: ZrTwoSidedPrinting\n",
                   "*CloseUI: *Duplex\n*OpenUI *Other/Other: PickOne\n"
                   "*CloseGroup: ZrTwoSidedPrinting\n*Other a/A: \"\"\n*CloseUI: *Other\n"}});
    const std::size_t group = before.find("*OpenGroup:");
    const std::string close = "*CloseGroup: ZrTwoSidedPrinting\n";
    const std::size_t end = before.find(close) + close.size();
    const std::string after = before.substr(0, group) + before.substr(end);
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(before, after, instancesOf(allNames())),
              "the line of Other a would belong to another option or group");
}

std::string reasonOfOwn(std::unique_ptr<ITkPPDUpdater> updater, const Edits& edits) {
    std::vector<std::unique_ptr<ITkPPDUpdater>> updaters;
    updaters.push_back(std::move(updater));
    return UpdateGuard::reasonNotToWrite(kBefore, edited(kBefore, edits), updaters)
        .value_or("accepted");
}

TEST(UpdateGuard, AClassThatDeclaresNothingMayChangeDefaultsOnly) {
    const auto reason = [](const Edits& edits) {
        return reasonOfOwn(std::make_unique<QuietUpdater>(), edits);
    };
    EXPECT_EQ(reason({{"*DefaultMediaType: Plain", "*DefaultMediaType: Photo"}}), "accepted");
    EXPECT_EQ(reason({{"*DefaultPageSize: A4", "*DefaultPageSize: A4.ZrDuplex"}}), "accepted");
    EXPECT_EQ(reason({{"*DefaultMediaType: Plain", "*DefaultMediaType: Nothing"}}),
              "the default of MediaType would name a choice that there is not");
    EXPECT_EQ(reason({{"*DefaultMediaType: Plain\n", ""}}),
              "the default of MediaType would be lost, which belongs to the user");
    EXPECT_EQ(reason({{kResolution, "*ZrMaxSupportedResolution: 1200\n"}}),
              "the line of ZrMaxSupportedResolution would be another");
    EXPECT_EQ(reason({{kResolution, "*ZrMaxSupportedResolution: 600\n*OwnValue: 1\n"}}),
              "it would get a new line of OwnValue");
}

TEST(UpdateGuard, AClassMayDeclareKeywordsAndChoices) {
    const auto reason = [](const Edits& edits) {
        OrbPPDOwnedLines owned;
        owned.attributes = {"OwnValue", "cupsFilter"};
        owned.choices = {{"MediaType", "Own", "<</Own true>>setpagedevice"}};
        return reasonOfOwn(std::make_unique<OwningUpdater>(std::move(owned)), edits);
    };
    EXPECT_EQ(reason({{kResolution, "*ZrMaxSupportedResolution: 600\n*OwnValue: 1\n"}}),
              "accepted");
    EXPECT_EQ(
        reason({{kCloseMedia,
                 "*MediaType Own/Own: \"<</Own true>>setpagedevice\"\n*CloseUI: *MediaType\n"}}),
        "accepted");
    EXPECT_EQ(reason({{kCloseMedia, "*MediaType Own/Own: \"run\"\n*CloseUI: *MediaType\n"}}),
              "it would get a new line of MediaType Own");
    EXPECT_EQ(reason({{"*DefaultMediaType: Plain", "*DefaultMediaType: Photo"}}),
              "the default of MediaType would be lost, which belongs to the user");
    EXPECT_EQ(reason({{"*cupsFilter: \"a 0 b\"", "*cupsFilter: \"x 0 y\""}}),
              "it would get a new line of cupsFilter, which names a program");
}

TEST(UpdateGuard, AnUnchangedTextNeedsNoUpdater) {
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, kBefore, {}), std::nullopt);
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, std::string(kBefore) + "*A: 1\n", {}),
              "it would get a new line of A");
}

TEST(UpdateGuard, AnEmptyResultIsRefused) {
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, "", instancesOf(allNames())),
              "it would lose a line of PPD-Adobe");
}

TEST(UpdateGuard, AResultThatBeginsWithAnotherLineIsRefused) {
    for (const std::string line : {"\n", "\r\n", " \t\n"}) {
        EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, line + kBefore, instancesOf(allNames())),
                  "another line would stand before its first one");
        EXPECT_EQ(UpdateGuard::reasonNotToWrite(line + kBefore, kBefore, instancesOf(allNames())),
                  std::nullopt);
        EXPECT_EQ(
            UpdateGuard::reasonNotToWrite(line + kBefore, "\n" + line + kBefore, instancesOf({})),
            std::nullopt);
    }
    const std::string owned = "*ZrMaxSupportedResolution: 600\n";
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, owned + edited(kBefore, {{owned, ""}}),
                                            instancesOf(allNames())),
              "another line would stand before its first one");
    EXPECT_EQ(UpdateGuard::reasonNotToWrite(kBefore, std::string(kBefore) + "\n", instancesOf({})),
              std::nullopt);
}

TEST(UpdateGuard, TheReasonHoldsNoTextThatCannotBeShown) {
    const auto reason = UpdateGuard::reasonNotToWrite(
        kBefore, std::string(kBefore) + "*\x1B[2J: 1\n", instancesOf(allNames()));
    EXPECT_EQ(reason, "it would get a new line of a keyword that cannot be shown");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
