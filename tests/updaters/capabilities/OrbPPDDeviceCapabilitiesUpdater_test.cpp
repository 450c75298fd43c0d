#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "manager/MissingResourceWatch.h"
#include "manager/OrbClassTable.h"
#include "tests/support/NamedText.h"
#include "tests/updaters/capabilities/CapabilitiesTestSupport.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr std::string_view kUpdaterName = "OrbPPDDeviceCapabilitiesUpdater";
constexpr std::string_view kBlockKey = "OrbPPDDeviceCapabilitiesUpdater-2.4";

/// A PPD's text with its duplex support undecided.
constexpr std::string_view kUndecided =
    "*PPD-Adobe: \"4.3\"\n"
    "*ZrDeviceCapabilities: Undetected\n"
    "*cupsVersion: 2.4\n"
    "*ZrAutoDuplexCapability: Unknown\n"
    "*OpenGroup: ZrTwoSidedPrinting/Two-Sided\n"
    "*OpenUI *Duplex/Two-Sided: PickOne\n"
    "*CloseUI: *Duplex\n"
    "*CloseGroup: ZrTwoSidedPrinting\n"
    "*UIConstraints: *Duplex DuplexTumble *MediaType Glossy\n"
    "*UIConstraints: *MediaType Glossy *InputSlot Lower\n";

constexpr std::string_view kWithoutDuplex =
    "*PPD-Adobe: \"4.3\"\n"
    "*ZrDeviceCapabilities: Detected\n"
    "*cupsVersion: 2.4\n"
    "*ZrAutoDuplexCapability: False\n"
    "*UIConstraints: *MediaType Glossy *InputSlot Lower\n";

std::string textWithDuplexer() {
    std::string text(kUndecided);
    text.replace(text.find("Undetected"), 10, "Detected");
    return text.replace(text.find("Unknown"), 7, "True");
}

std::optional<bool> installedWith(const DeviceScope& /*device*/) {
    OrbDictionary context;
    return OrbPPDDeviceCapabilitiesUpdater().duplexerInstalledOnDevice_context("test:", &context);
}

std::string removedGroup(std::string_view text) {
    return *OrbPPDDeviceCapabilitiesUpdater::contentsForContents_byRemovingGroupWithName(
        textOf(text), "G");
}

TEST(DeviceCapabilitiesUpdater, IsInTheClassTable) {
    const OrbClass* const found = OrbClassFromName(kUpdaterName);
    ASSERT_NE(found, nullptr);
    EXPECT_TRUE(found->conformsToITkPPDUpdater());
}

TEST(DeviceCapabilitiesUpdater, AppliesExactlyWhenTheFirstCapabilityIsUnknown) {
    OrbPPDDeviceCapabilitiesUpdater updater;
    const auto appliesTo = [&](std::string_view lines) {
        return updater.isApplicableForPPDFile(parsedPPD(lines).get());
    };
    EXPECT_TRUE(appliesTo("*ZrAutoDuplexCapability: Unknown\n"));
    EXPECT_TRUE(appliesTo("*ZrAutoDuplexCapability: \"Unknown\"\n"));
    EXPECT_TRUE(appliesTo("*ZrAutoDuplexCapability: Unknown\n*ZrAutoDuplexCapability: True\n"));
    EXPECT_FALSE(appliesTo("*ZrAutoDuplexCapability: True\n*ZrAutoDuplexCapability: Unknown\n"));
    EXPECT_FALSE(appliesTo("*ZrAutoDuplexCapability: False\n"));
    EXPECT_FALSE(appliesTo("*ZrAutoDuplexCapability: unknown\n"));
    EXPECT_FALSE(appliesTo("*ZrAutoDuplexCapability: UnknownToo\n"));
    EXPECT_FALSE(appliesTo("*ZrAutoDuplexCapability:\n"));
    EXPECT_FALSE(appliesTo("*ZrDeviceCapabilities: Unknown\n"));
    EXPECT_FALSE(updater.isApplicableForPPDFile(nullptr));
}

TEST(DeviceCapabilitiesUpdater, OffersNoValues) {
    const auto device = DeviceScope::withDuplexer(true);
    OrbDictionary context;
    const auto values =
        OrbPPDDeviceCapabilitiesUpdater().PPDUpdatingValuesForPPDFile_deviceURI_context(
            parsedPPD(kUndecided).get(), "test:", &context);
    ASSERT_TRUE(values.has_value());
    EXPECT_TRUE(values->empty());
}

TEST(DeviceCapabilitiesUpdater, DuplexerIsUnknownWithoutAStatus) {
    EXPECT_EQ(installedWith(DeviceScope::withDuplexer(std::nullopt)), std::nullopt);
}

TEST(DeviceCapabilitiesUpdater, DuplexerIsUnknownWithoutAListOfAccessories) {
    EXPECT_EQ(installedWith(DeviceScope(std::make_shared<FakeDeviceStatus>())), std::nullopt);
}

TEST(DeviceCapabilitiesUpdater, DuplexerIsUnknownWhenNoAccessoryIsOne) {
    EXPECT_EQ(installedWith(DeviceScope(OrbCSDeviceAccessories{})), std::nullopt);
    EXPECT_EQ(installedWith(DeviceScope(OrbCSDeviceAccessories{
                  {"Tray2", true}, {std::nullopt, true}, {"duplexer", true}})),
              std::nullopt);
}

TEST(DeviceCapabilitiesUpdater, DuplexerIsTheLastAccessoryOfThatName) {
    EXPECT_EQ(installedWith(DeviceScope(OrbCSDeviceAccessories{
                  {"Duplexer", false}, {"Duplexer", true}, {"Tray2", false}})),
              true);
    EXPECT_EQ(
        installedWith(DeviceScope(OrbCSDeviceAccessories{{"Duplexer", true}, {"Duplexer", false}})),
        false);
}

TEST(DeviceCapabilitiesUpdater, AppendsTheBlockOfTheVersionWhenTheDeviceHasADuplexer) {
    const ResourceScope resources(propertyListOf(textEntry(kBlockKey, "*Block: x\n")));
    const auto device = DeviceScope::withDuplexer(true);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(kUndecided),
              textWithDuplexer() + "\n*Block: x\n");
}

TEST(DeviceCapabilitiesUpdater, TakesASilentDeviceForOneWithADuplexer) {
    const ResourceScope resources(propertyListOf(textEntry(kBlockKey, "*Block: x\n")));
    const auto device = DeviceScope::withDuplexer(std::nullopt);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(kUndecided),
              textWithDuplexer() + "\n*Block: x\n");
}

TEST(DeviceCapabilitiesUpdater, TakesADeviceWithoutAccessoriesForOneWithADuplexer) {
    const ResourceScope resources(propertyListOf(textEntry(kBlockKey, "*Block: x\n")));
    const DeviceScope device(OrbCSDeviceAccessories{});
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(kUndecided),
              textWithDuplexer() + "\n*Block: x\n");
}

TEST(DeviceCapabilitiesUpdater, RemovesGroupAndConstraintsWhenTheDeviceHasNoDuplexer) {
    const auto device = DeviceScope::withDuplexer(false);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(kUndecided), kWithoutDuplex);
}

TEST(DeviceCapabilitiesUpdater, RemovesAConstraintThatEndsATextWithoutLineFeed) {
    const auto device = DeviceScope::withDuplexer(false);
    for (const char* const line :
         {"*UIConstraints: *MediaType Glossy *Duplex",
          "*UIConstraints: *MediaType Glossy *Duplex DuplexTumble", "*% Duplex <-> MediaType"}) {
        EXPECT_EQ(
            *updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(std::string(kUndecided) + line),
            kWithoutDuplex)
            << line;
    }
}

TEST(DeviceCapabilitiesUpdater, LeavesATextWithoutGroupAndConstraintsButForTheAttributes) {
    const auto device = DeviceScope::withDuplexer(false);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(
                  "*ZrAutoDuplexCapability: Unknown\n*ZrDeviceCapabilities: x"),
              "*ZrAutoDuplexCapability: False\n*ZrDeviceCapabilities: Detected\n");
}

TEST(DeviceCapabilitiesUpdater, GivesNothingWhenEitherAttributeIsMissing) {
    const auto device = DeviceScope::withDuplexer(false);
    EXPECT_EQ(
        updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>("*ZrAutoDuplexCapability: Unknown\n"),
        nullptr);
    EXPECT_EQ(updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>("*ZrDeviceCapabilities: x\n"),
              nullptr);
    EXPECT_EQ(updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(""), nullptr);
}

TEST(DeviceCapabilitiesUpdater, GivesNothingForNoText) {
    const OrbPPDDeviceCapabilitiesUpdater updater;
    EXPECT_EQ(updater.contentsForContents_byUpdatingDuplexerInstalled(nullptr, true), nullptr);
    EXPECT_EQ(updater.contentsForContents_byRemovingGroupWithName(nullptr, "G"), nullptr);
    EXPECT_EQ(updater.contentsForContents_byRemovingConstraintsForOptionWithName(nullptr, "O"),
              nullptr);
    EXPECT_EQ(updater.contentsByRemovingDuplexOptionWithConstraintsForContents(nullptr), nullptr);
    EXPECT_EQ(updater.contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
                  nullptr, "2.4"),
              nullptr);
}

TEST(DeviceCapabilitiesUpdater, ReplacesAnAttributeOfSeveralLinesWithItsTranslations) {
    const auto device = DeviceScope::withDuplexer(false);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(
                  "*ZrDeviceCapabilities: \"a\nb\"\n*End\n*en.ZrDeviceCapabilities: "
                  "\"\"\n*ZrAutoDuplexCapability: Unknown\n"),
              "*ZrDeviceCapabilities: Detected\n*ZrAutoDuplexCapability: False\n");
}

TEST(DeviceCapabilitiesUpdater, RaisesOutOfRangeWhenTheVersionEndsAtItsColon) {
    const auto device = DeviceScope::withDuplexer(true);
    EXPECT_THROW(updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(
                     "*ZrAutoDuplexCapability: Unknown\n*ZrDeviceCapabilities: "
                     "x\n*cupsVersion:\n"),
                 std::out_of_range);
}

TEST(DeviceCapabilitiesUpdater, DoesNotReadTheVersionWithoutADuplexer) {
    constexpr std::string_view kBareVersion =
        "*ZrAutoDuplexCapability: Unknown\n*ZrDeviceCapabilities: x\n*cupsVersion:\n";
    constexpr std::string_view kWithout =
        "*ZrAutoDuplexCapability: False\n*ZrDeviceCapabilities: Detected\n*cupsVersion:\n";
    const auto device = DeviceScope::withDuplexer(false);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(kBareVersion), kWithout);
    EXPECT_EQ(*updatedFromPPD<OrbPPDDeviceCapabilitiesUpdater>(textOf(kBareVersion),
                                                               "*ZrAutoDuplexCapability: False\n"),
              kWithout);
}

TEST(DeviceCapabilitiesUpdater, CopiesTheStateOfAnotherPPD) {
    const ResourceScope resources;
    EXPECT_EQ(*updatedFromPPD<OrbPPDDeviceCapabilitiesUpdater>(textOf(kUndecided),
                                                               "*ZrAutoDuplexCapability: True\n"),
              textWithDuplexer());
    for (const char* const value : {"False", "Unknown", "true", "TrueToo"}) {
        const std::string line = std::string("*ZrAutoDuplexCapability: ") + value + "\n";
        EXPECT_EQ(*updatedFromPPD<OrbPPDDeviceCapabilitiesUpdater>(textOf(kUndecided), line),
                  kWithoutDuplex)
            << value;
    }
    EXPECT_EQ(*updatedFromPPD<OrbPPDDeviceCapabilitiesUpdater>(textOf(kUndecided),
                                                               "*ZrAutoDuplexCapability:\n"),
              kWithoutDuplex);
}

TEST(DeviceCapabilitiesUpdater, GivesTheTextItselfWhenTheOtherPPDHasNoState) {
    const PPDText text = textOf(kUndecided);
    EXPECT_EQ(updatedFromPPD<OrbPPDDeviceCapabilitiesUpdater>(text, "*Other: True\n"), text);
    OrbDictionary context;
    EXPECT_EQ(OrbPPDDeviceCapabilitiesUpdater().updatedPPDContentsForContents_PPDFile_context(
                  text, nullptr, &context),
              text);
}

TEST(DeviceCapabilitiesUpdater, LooksUpAMissingVersionAsNull) {
    const ResourceScope resources(propertyListOf(
        textEntry("OrbPPDDeviceCapabilitiesUpdater-(null)", "*Block: no version\n")));
    const auto device = DeviceScope::withDuplexer(true);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(
                  "*ZrAutoDuplexCapability: Unknown\n*ZrDeviceCapabilities: x\n"),
              "*ZrAutoDuplexCapability: True\n*ZrDeviceCapabilities: Detected\n\n"
              "*Block: no version\n");
}

TEST(DeviceCapabilitiesUpdater, LooksUpAVersionOfOneCharacterAsNull) {
    const ResourceScope resources(
        propertyListOf(textEntry("OrbPPDDeviceCapabilitiesUpdater-(null)", "null\n") +
                       textEntry("OrbPPDDeviceCapabilitiesUpdater-2", "two\n")));
    const auto device = DeviceScope::withDuplexer(true);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(
                  "*cupsVersion: 2\n*ZrAutoDuplexCapability: Unknown\n"
                  "*ZrDeviceCapabilities: x\n"),
              "*cupsVersion: 2\n*ZrAutoDuplexCapability: True\n*ZrDeviceCapabilities: "
              "Detected\n\nnull\n");
}

TEST(DeviceCapabilitiesUpdater, TakesTheCarriageReturnOfAnUnquotedVersionIntoTheKey) {
    const ResourceScope resources(propertyListOf(textEntry(kBlockKey, "block\n")));
    const auto device = DeviceScope::withDuplexer(true);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(
                  "*cupsVersion: 2.4\r\n*ZrAutoDuplexCapability: Unknown\r\n"
                  "*ZrDeviceCapabilities: x\r\n"),
              "*cupsVersion: 2.4\r\n*ZrAutoDuplexCapability: True\n*ZrDeviceCapabilities: "
              "Detected\n");
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(
                  "*cupsVersion: \"2.4\"\r\n*ZrAutoDuplexCapability: Unknown\r\n"
                  "*ZrDeviceCapabilities: x\r\n"),
              "*cupsVersion: \"2.4\"\r\n*ZrAutoDuplexCapability: True\n*ZrDeviceCapabilities: "
              "Detected\n\nblock\n");
}

TEST(DeviceCapabilitiesUpdater, ReadsThePropertyListAnewOnEveryCall) {
    const ResourceScope resources(propertyListOf(textEntry(kBlockKey, "first")));
    const OrbPPDDeviceCapabilitiesUpdater updater;
    EXPECT_EQ(updater.insertingStringForCUPSVersion("2.4"), "first");
    resources.setPropertyList(propertyListOf(textEntry(kBlockKey, "second")));
    EXPECT_EQ(updater.insertingStringForCUPSVersion("2.4"), "second");
    EXPECT_EQ(updater.insertingStringForCUPSVersion("2.5"), std::nullopt);
}

TEST(DeviceCapabilitiesUpdater, LooksUpBlocksByTheClassOfTheObject) {
    class Subclass : public OrbPPDDeviceCapabilitiesUpdater {
        std::string_view className() const override { return "Subclass"; }
    };
    const ResourceScope resources(propertyListOf(textEntry("Subclass-2.4", "of the subclass") +
                                                 textEntry(kBlockKey, "of the base")));
    EXPECT_EQ(Subclass().insertingStringForCUPSVersion("2.4"), "of the subclass");
}

class UnusablePropertyList : public testing::TestWithParam<NamedText> {};

TEST_P(UnusablePropertyList, StillRewritesTheAttributesAndAppendsNothing) {
    const ResourceScope resources;
    if (GetParam().text) {
        resources.setPropertyList(GetParam().text);
    }
    const auto device = DeviceScope::withDuplexer(true);
    EXPECT_EQ(*updatedFromDevice<OrbPPDDeviceCapabilitiesUpdater>(kUndecided), textWithDuplexer());
}

INSTANTIATE_TEST_SUITE_P(
    DeviceCapabilitiesUpdater, UnusablePropertyList,
    testing::Values(
        NamedText{"Missing", nullptr}, NamedText{"Empty", ""}, NamedText{"NoXML", "damaged"},
        NamedText{"CutShort", "<plist version=\"1.0\"><dict>"},
        NamedText{"AnArray", "<plist version=\"1.0\"><array/></plist>"},
        NamedText{"AString",
                  "<plist version=\"1.0\"><string>OrbPPDDeviceCapabilitiesUpdater-2.4</string>"
                  "</plist>"},
        NamedText{"AnIntegerUnderTheKey",
                  "<plist version=\"1.0\"><dict><key>OrbPPDDeviceCapabilitiesUpdater-2.4</key>"
                  "<integer>1</integer></dict></plist>"},
        NamedText{"AnArrayUnderTheKey",
                  "<plist version=\"1.0\"><dict><key>OrbPPDDeviceCapabilitiesUpdater-2.4</key>"
                  "<array><string>x</string></array></dict></plist>"},
        NamedText{"OnlyAnotherVersion",
                  "<plist version=\"1.0\"><dict><key>OrbPPDDeviceCapabilitiesUpdater-2.3</key>"
                  "<string>x</string></dict></plist>"}),
    nameOfCase);

TEST(DeviceCapabilitiesUpdater, AppendsNothingWhenThePropertyListIsAFolder) {
    TemporaryDirectory folder;
    folder.write("TkPPDUpdatingData.plist/x", "");
    ResourceFolder::setPath(folder.path().string());
    EXPECT_EQ(OrbPPDDeviceCapabilitiesUpdater().insertingStringForCUPSVersion("2.4"), std::nullopt);
    ResourceFolder::setPath(std::nullopt);
}

/// What a look-up of a block could not read.
std::string missingToALookUp() {
    try {
        MissingResourceWatch::resultOf(
            [] { return OrbPPDDeviceCapabilitiesUpdater().insertingStringForCUPSVersion("2.4"); });
        return "nothing";
    } catch (const MissingResourceError& error) {
        return error.what();
    }
}

TEST(DeviceCapabilitiesUpdater, TellsOfAPropertyListThatItCannotRead) {
    const ResourceScope resources;
    const std::string told =
        "data of the library cannot be read: " + ResourceFolder::path().value_or("") +
        "/TkPPDUpdatingData.plist";
    EXPECT_EQ(missingToALookUp(), told);
    resources.setPropertyList("damaged");
    EXPECT_EQ(missingToALookUp(), told);
    resources.setPropertyList(propertyListOf(""));
    EXPECT_EQ(missingToALookUp(), "nothing");
}

TEST(DeviceCapabilitiesUpdater, OwnsItsAttributesTheLinesOfDuplexAndTheBlockOfTheVersion) {
    const ResourceScope resources(
        propertyListOf(textEntry(kBlockKey, "*Block: x\n*CloseUI: *Block\n") +
                       textEntry("OrbPPDDeviceCapabilitiesUpdater-2.3", "*Older: x\n")));
    OrbPPDDeviceCapabilitiesUpdater updater;
    const auto before = PPDStatementsOfText(kUndecided);
    const OrbPPDOwnedLines owned = updater.ownedLines(before, {});
    using Lines = std::vector<std::string>;
    EXPECT_EQ(owned.attributes, (Lines{"ZrDeviceCapabilities", "ZrAutoDuplexCapability"}));
    EXPECT_TRUE(owned.defaultsOfOptions.empty());
    EXPECT_TRUE(owned.choices.empty());
    EXPECT_EQ(
        linesThat(owned.mayTakeAway, kUndecided),
        (Lines{"*OpenGroup: ZrTwoSidedPrinting/Two-Sided", "*OpenUI *Duplex/Two-Sided: PickOne",
               "*CloseUI: *Duplex", "*CloseGroup: ZrTwoSidedPrinting",
               "*UIConstraints: *Duplex DuplexTumble *MediaType Glossy"}));
    EXPECT_EQ(linesThat(owned.mayAdd, "*Older: x\n*CloseUI: *Block\n*Block: y\n*Block: x\n"),
              (Lines{"*CloseUI: *Block", "*Block: x"}));
}

TEST(DeviceCapabilitiesUpdater, AppendsTheBlockAfterALastLineWithoutLineFeed) {
    const ResourceScope resources(propertyListOf(textEntry(kBlockKey, "block\n")));
    const OrbPPDDeviceCapabilitiesUpdater updater;
    EXPECT_EQ(*updater.contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
                  textOf("last"), "2.4"),
              "last\nblock\n");
    const PPDText text = textOf("text");
    EXPECT_EQ(updater.contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
                  text, "9.9"),
              text);
}

TEST(DeviceCapabilitiesUpdater, AppendsALineFeedAndTheBlockToAnyText) {
    const OrbPPDDeviceCapabilitiesUpdater updater;
    const auto appended = [&](std::string_view text) {
        return *updater.contentsByInsertingInstallableOptionsWithConstraintsForContents_CUPSVersion(
            textOf(text), "2.4");
    };
    const ResourceScope resources;
    for (const std::string block : {"", "block", "block\n", "two\nlines", "block\n\n"}) {
        resources.setPropertyList(propertyListOf(textEntry(kBlockKey, block)));
        for (const std::string text : {"", "a", "a\n", "\n", "a\n\n"}) {
            EXPECT_EQ(appended(text), text + "\n" + block);
        }
    }
}

TEST(RemovingAGroup, RemovesFromOpenLineThroughCloseLine) {
    EXPECT_EQ(removedGroup("a\n*OpenGroup: G\nx\n*% y\n\n*CloseGroup: G\nb\n"), "a\nb\n");
    EXPECT_EQ(removedGroup("a\r\n*OpenGroup: G\r\nx\r\n*CloseGroup: G\r\nb\r\n"), "a\r\nb\r\n");
    EXPECT_EQ(removedGroup("a\n*OpenGroup: G\n*CloseGroup: G\n"), "a\n");
}

TEST(RemovingAGroup, TakesTheNameAsAPrefix) {
    EXPECT_EQ(removedGroup("a\n*OpenGroup: G/Text\nx\n*CloseGroup: G\nb\n"), "a\nb\n");
    EXPECT_EQ(removedGroup("a\n*OpenGroup: Glossy\nx\n*CloseGroup: Green\nb\n"), "a\nb\n");
}

TEST(RemovingAGroup, TakesTheFirstOfEach) {
    EXPECT_EQ(removedGroup("a\n*OpenGroup: G\nx\n*CloseGroup: G\nb\n*OpenGroup: G\ny\n"
                           "*CloseGroup: G\n"),
              "a\nb\n*OpenGroup: G\ny\n*CloseGroup: G\n");
}

TEST(RemovingAGroup, TakesNestedGroupsAlong) {
    EXPECT_EQ(removedGroup("a\n*OpenGroup: G\n*OpenGroup: H\nx\n*CloseGroup: H\n*CloseGroup: G\nb"),
              "a\nb");
}

TEST(RemovingAGroup, EndsAtTheInnerCloseOfAGroupNestedInItself) {
    EXPECT_EQ(removedGroup("a\n*OpenGroup: G\n*OpenGroup: G\nx\n*CloseGroup: G\ny\n*CloseGroup: "
                           "G\nb\n"),
              "a\ny\n*CloseGroup: G\nb\n");
}

TEST(RemovingAGroup, PassesOverACloseBeforeTheOpen) {
    EXPECT_EQ(removedGroup("a\n*CloseGroup: G\n*OpenGroup: G\nx\n*CloseGroup: G\nb\n"),
              "a\n*CloseGroup: G\nb\n");
}

class GroupThatStays : public testing::TestWithParam<NamedText> {};

TEST_P(GroupThatStays, GivesTheTextItself) {
    const PPDText text = textOf(GetParam().text);
    EXPECT_EQ(
        OrbPPDDeviceCapabilitiesUpdater::contentsForContents_byRemovingGroupWithName(text, "G"),
        text);
}

INSTANTIATE_TEST_SUITE_P(
    RemovingAGroup, GroupThatStays,
    testing::Values(NamedText{"EmptyText", ""}, NamedText{"NoGroup", "a\n"},
                    NamedText{"NeverCloses", "a\n*OpenGroup: G\nx\n"},
                    NamedText{"ClosesBeforeItOpens", "a\n*CloseGroup: G\n*OpenGroup: G\nx\n"},
                    NamedText{"NoLineFeedBehindIt", "a\n*OpenGroup: G\nx\n*CloseGroup: G"},
                    NamedText{"OpensAtTheVeryStart", "*OpenGroup: G\nx\n*CloseGroup: G\nb\n"},
                    NamedText{"OtherCase", "a\n*opengroup: G\nx\n*closegroup: G\nb\n"},
                    NamedText{"TwoSpaces", "a\n*OpenGroup:  G\nx\n*CloseGroup: G\nb\n"},
                    NamedText{"NotAtTheStartOfALine", "a\n *OpenGroup: G\nx\n*CloseGroup: G\nb\n"},
                    NamedText{"AnotherGroup", "a\n*OpenGroup: H\nx\n*CloseGroup: H\nb\n"}),
    nameOfCase);

}  // namespace
}  // namespace TkPPDUpdating::Testing
