#include "updaters/capabilities/OrbPPDNonInstallableDuplexUpdater.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "manager/OrbClassTable.h"
#include "tests/updaters/capabilities/CapabilitiesTestSupport.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr std::string_view kUpdaterName = "OrbPPDNonInstallableDuplexUpdater";
constexpr std::string_view kExpressionKey = "TkPPDDuplexSafeRegularExpression";

constexpr std::string_view kUndecided =
    "*PPD-Adobe: \"4.3\"\n"
    "*cupsVersion: \"2.4\"\n"
    "*ZrDeviceCapabilities: x\n"
    "*ZrAutoDuplexCapability: Unknown\n"
    "*ZrNonInstallableDuplex: Unknown\n"
    "\n"
    "*OpenGroup: ZrTwoSidedPrinting/Two-Sided\n"
    "*OpenUI *Duplex/Two-Sided: PickOne\n"
    "*CloseUI: *Duplex\n"
    "*CloseGroup: ZrTwoSidedPrinting\n"
    "*UIConstraints: *Duplex DuplexTumble *MediaType Glossy\n"
    "*UIConstraints: *MediaType Glossy *InputSlot Lower\n"
    "*PageSize A4/A4: \"\"\n"
    "*PageSize A4.Safe/A4: \"\"\n"
    "\n"
    "*UIConstraints: *PageSize A4.Safe *InputSlot Lower\n";

/// The text with that status and nothing else changed.
std::string textWithStatus(std::string_view status) {
    std::string text(kUndecided);
    constexpr std::string_view kLine = "*ZrNonInstallableDuplex: Unknown";
    return text.replace(text.find(kLine), kLine.size(),
                        "*ZrNonInstallableDuplex: " + std::string(status));
}

std::string textWithoutGroupAndConstraints() {
    std::string text = textWithStatus("Not Installed");
    const std::size_t start = text.find("*OpenGroup");
    return text.erase(start, text.find("*UIConstraints: *MediaType") - start);
}

std::string textWithoutDuplex() {
    std::string text = textWithoutGroupAndConstraints();
    for (const std::string_view line :
         {"*PageSize A4.Safe/A4: \"\"\n", "*UIConstraints: *PageSize A4.Safe *InputSlot Lower\n"}) {
        text.erase(text.find(line), line.size());
    }
    return text;
}

const std::string& dataWithBlockAndExpression() {
    static const std::string data =
        propertyListOf(textEntry("OrbPPDNonInstallableDuplexUpdater-2.4", "*Block: x\n") +
                       textEntry("OrbPPDDeviceCapabilitiesUpdater-2.4", "of the base\n") +
                       textEntry(kExpressionKey, "PageSize A4\\.Safe"));
    return data;
}

/// The text after the page-size step with that expression.
std::string filtered(std::string_view text, std::string_view expression) {
    const ResourceScope resources(propertyListOf(textEntry(kExpressionKey, expression)));
    return *OrbPPDNonInstallableDuplexUpdater().contentsByRemovingDuplexSafePageSizesForContents(
        textOf(text));
}

TEST(NonInstallableDuplexUpdater, IsInTheClassTable) {
    const OrbClass* const found = OrbClassFromName(kUpdaterName);
    ASSERT_NE(found, nullptr);
    EXPECT_TRUE(found->conformsToITkPPDUpdater());
}

TEST(NonInstallableDuplexUpdater, AppliesExactlyWhenTheFirstStatusIsUnknown) {
    OrbPPDNonInstallableDuplexUpdater updater;
    const auto appliesTo = [&](std::string_view lines) {
        return updater.isApplicableForPPDFile(parsedPPD(lines).get());
    };
    EXPECT_TRUE(appliesTo("*ZrNonInstallableDuplex: Unknown\n"));
    EXPECT_TRUE(
        appliesTo("*ZrNonInstallableDuplex: \"Unknown\"\n*ZrNonInstallableDuplex: Installed\n"));
    EXPECT_FALSE(
        appliesTo("*ZrNonInstallableDuplex: Installed\n*ZrNonInstallableDuplex: Unknown\n"));
    EXPECT_FALSE(appliesTo("*ZrNonInstallableDuplex: Not Detected\n"));
    EXPECT_FALSE(appliesTo("*ZrNonInstallableDuplex:\n"));
    EXPECT_FALSE(appliesTo("*ZrAutoDuplexCapability: Unknown\n"));
    EXPECT_FALSE(updater.isApplicableForPPDFile(nullptr));
}

TEST(NonInstallableDuplexUpdater, OffersNoValues) {
    const auto device = DeviceScope::withDuplexer(true);
    OrbDictionary context;
    const auto values =
        OrbPPDNonInstallableDuplexUpdater().PPDUpdatingValuesForPPDFile_deviceURI_context(
            parsedPPD(kUndecided).get(), "test:", &context);
    ASSERT_TRUE(values.has_value());
    EXPECT_TRUE(values->empty());
}

TEST(NonInstallableDuplexUpdater, OnlyRecordsAnInstalledUnit) {
    const ResourceScope resources(dataWithBlockAndExpression());
    const auto device = DeviceScope::withDuplexer(true);
    EXPECT_EQ(*updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>(kUndecided),
              textWithStatus("Installed"));
}

TEST(NonInstallableDuplexUpdater, AppendsTheBlockWhenTheDeviceIsSilent) {
    const ResourceScope resources(dataWithBlockAndExpression());
    const auto device = DeviceScope::withDuplexer(std::nullopt);
    EXPECT_EQ(*updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>(kUndecided),
              textWithStatus("Not Detected") + "\n*Block: x\n");
}

TEST(NonInstallableDuplexUpdater, OnlyRecordsASilentDeviceWithoutABlockForTheVersion) {
    const ResourceScope resources(
        propertyListOf(textEntry("OrbPPDDeviceCapabilitiesUpdater-2.4", "of the base\n")));
    const auto device = DeviceScope::withDuplexer(std::nullopt);
    EXPECT_EQ(*updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>(kUndecided),
              textWithStatus("Not Detected"));
}

TEST(NonInstallableDuplexUpdater, LooksUpAMissingVersionAsNull) {
    const ResourceScope resources(
        propertyListOf(textEntry("OrbPPDNonInstallableDuplexUpdater-(null)", "no version\n")));
    const auto device = DeviceScope::withDuplexer(std::nullopt);
    EXPECT_EQ(
        *updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>("*ZrNonInstallableDuplex: Unknown\n"),
        "*ZrNonInstallableDuplex: Not Detected\n\nno version\n");
}

TEST(NonInstallableDuplexUpdater, RemovesAllThatNeedsTheUnitWhenTheDeviceHasNone) {
    const ResourceScope resources(dataWithBlockAndExpression());
    const auto device = DeviceScope::withDuplexer(false);
    EXPECT_EQ(*updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>(kUndecided),
              textWithoutDuplex());
}

TEST(NonInstallableDuplexUpdater, LeavesThePageSizesWhenTheExpressionDoesNotCompile) {
    const ResourceScope resources(propertyListOf(textEntry(kExpressionKey, "A4(")));
    const auto device = DeviceScope::withDuplexer(false);
    EXPECT_EQ(*updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>(kUndecided),
              textWithoutGroupAndConstraints());
}

TEST(NonInstallableDuplexUpdater, LeavesThePageSizesWhenThereIsNoExpression) {
    const auto device = DeviceScope::withDuplexer(false);
    for (const std::string& data :
         {std::string("damaged"), propertyListOf(""),
          propertyListOf("<key>TkPPDDuplexSafeRegularExpression</key><true/>")}) {
        const ResourceScope resources(data);
        EXPECT_EQ(*updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>(kUndecided),
                  textWithoutGroupAndConstraints())
            << data;
    }
}

TEST(NonInstallableDuplexUpdater, GivesNothingWhenTheAttributeIsMissing) {
    for (const auto state : {std::optional<bool>(), std::optional(true), std::optional(false)}) {
        const auto device = DeviceScope::withDuplexer(state);
        EXPECT_EQ(updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>(
                      "*ZrAutoDuplexCapability: Unknown\n"),
                  nullptr);
    }
}

TEST(NonInstallableDuplexUpdater, GivesNothingForNoTextOrNoStatus) {
    const OrbPPDNonInstallableDuplexUpdater updater;
    EXPECT_EQ(
        updater.contentsForContents_byUpdatingDuplexerInstalledWithStatus(nullptr, "Installed"),
        nullptr);
    EXPECT_EQ(updater.contentsForContents_byUpdatingDuplexerInstalledWithStatus(textOf(kUndecided),
                                                                                std::nullopt),
              nullptr);
    EXPECT_EQ(updater.contentsByRemovingDuplexSafePageSizesForContents(nullptr), nullptr);
}

TEST(NonInstallableDuplexUpdater, GivesNothingWhenTheStatusIsTooLongForALine) {
    const OrbPPDNonInstallableDuplexUpdater updater;
    // "*ZrNonInstallableDuplex: " takes 25 bytes of the 255 that a line may have.
    const auto updated = [&](std::size_t length) {
        return updater.contentsForContents_byUpdatingDuplexerInstalledWithStatus(
            textOf("*ZrNonInstallableDuplex: Unknown\n"), std::string(length, 'x'));
    };
    ASSERT_NE(updated(230), nullptr);
    EXPECT_EQ(updated(230)->size(), 256U);
    EXPECT_EQ(updated(231), nullptr);
}

TEST(NonInstallableDuplexUpdater, RaisesOutOfRangeWhenTheVersionEndsAtItsColon) {
    const auto device = DeviceScope::withDuplexer(std::nullopt);
    EXPECT_THROW(updatedFromDevice<OrbPPDNonInstallableDuplexUpdater>(
                     "*ZrNonInstallableDuplex: Unknown\n*cupsVersion:\n"),
                 std::out_of_range);
}

TEST(NonInstallableDuplexUpdater, ReadsTheVersionForADeviceThatCannotTellOnly) {
    const ResourceScope resources(dataWithBlockAndExpression());
    constexpr std::string_view kBareVersion = "*ZrNonInstallableDuplex: Unknown\n*cupsVersion:\n";
    for (const std::string status : {"Installed", "Not Installed", "Unknown", "not detected"}) {
        EXPECT_EQ(*updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(
                      textOf(kBareVersion), "*ZrNonInstallableDuplex: " + status + "\n"),
                  "*ZrNonInstallableDuplex: " + status + "\n*cupsVersion:\n");
    }
    EXPECT_THROW(updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(
                     textOf(kBareVersion), "*ZrNonInstallableDuplex: Not Detected\n"),
                 std::out_of_range);
}

TEST(NonInstallableDuplexUpdater, CopiesUnknownOverAnyWordOfTheText) {
    const ResourceScope resources(dataWithBlockAndExpression());
    for (const char* const status : {"Installed", "Not Installed", "Not Detected", "other"}) {
        EXPECT_EQ(*updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(
                      textOf(textWithStatus(status)), "*ZrNonInstallableDuplex: Unknown\n"),
                  kUndecided)
            << status;
    }
}

TEST(NonInstallableDuplexUpdater, CopiesTheWordOfAnotherPPD) {
    const ResourceScope resources(dataWithBlockAndExpression());
    const PPDText text = textOf(kUndecided);
    EXPECT_EQ(*updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(
                  text, "*ZrNonInstallableDuplex: Unknown\n"),
              kUndecided);
    EXPECT_EQ(*updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(
                  text, "*ZrNonInstallableDuplex: Installed\n"),
              textWithStatus("Installed"));
    EXPECT_EQ(*updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(
                  text, "*ZrNonInstallableDuplex: not installed\n"),
              textWithStatus("not installed"));
    EXPECT_EQ(*updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(
                  text, "*ZrNonInstallableDuplex: Not Installed\n"),
              textWithoutDuplex());
    EXPECT_EQ(*updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(
                  text, "*ZrNonInstallableDuplex: Not Detected\n"),
              textWithStatus("Not Detected") + "\n*Block: x\n");
}

TEST(NonInstallableDuplexUpdater, GivesNothingWhenTheOtherPPDHasTheAttributeWithoutAValue) {
    EXPECT_EQ(updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(textOf(kUndecided),
                                                                "*ZrNonInstallableDuplex:\n"),
              nullptr);
}

TEST(NonInstallableDuplexUpdater, GivesTheTextItselfWhenTheOtherPPDHasNoStatus) {
    const PPDText text = textOf(kUndecided);
    EXPECT_EQ(updatedFromPPD<OrbPPDNonInstallableDuplexUpdater>(text, "*Other: Installed\n"), text);
}

TEST(NonInstallableDuplexUpdater, KeepsTheExpressionOnceItIsThere) {
    const ResourceScope resources;
    const OrbPPDNonInstallableDuplexUpdater updater;
    EXPECT_EQ(updater.duplexSafeRegularExpression(), std::nullopt);
    resources.setPropertyList(propertyListOf(textEntry(kExpressionKey, "first")));
    EXPECT_EQ(updater.duplexSafeRegularExpression(), "first");
    resources.setPropertyList(propertyListOf(textEntry(kExpressionKey, "second")));
    EXPECT_EQ(updater.duplexSafeRegularExpression(), "first");
    EXPECT_EQ(OrbPPDNonInstallableDuplexUpdater().duplexSafeRegularExpression(), "second");
}

TEST(NonInstallableDuplexUpdater, OwnsItsAttributeTheLinesOfDuplexAndThePageSizesAndItsBlock) {
    const ResourceScope resources(dataWithBlockAndExpression());
    OrbPPDNonInstallableDuplexUpdater updater;
    const auto before = PPDStatementsOfText(kUndecided);
    const OrbPPDOwnedLines owned = updater.ownedLines(before, {});
    using Lines = std::vector<std::string>;
    EXPECT_EQ(owned.attributes, Lines{"ZrNonInstallableDuplex"});
    EXPECT_EQ(
        linesThat(owned.mayTakeAway, kUndecided),
        (Lines{"*OpenGroup: ZrTwoSidedPrinting/Two-Sided", "*OpenUI *Duplex/Two-Sided: PickOne",
               "*CloseUI: *Duplex", "*CloseGroup: ZrTwoSidedPrinting",
               "*UIConstraints: *Duplex DuplexTumble *MediaType Glossy",
               "*PageSize A4.Safe/A4: \"\"",
               "*UIConstraints: *PageSize A4.Safe *InputSlot Lower"}));
    EXPECT_EQ(linesThat(owned.mayAdd, "*Block: x\nof the base\n"), Lines{"*Block: x"});
}

TEST(DuplexSafePageSizes, DropsMatchingLinesOfEveryKind) {
    EXPECT_EQ(filtered("*PageSize S: x\n*% S\n\n*UIConstraints: *S\nkept\n", "S"), "\nkept\n");
}

TEST(DuplexSafePageSizes, KeepsTheEndOfTheTextAsItWas) {
    EXPECT_EQ(filtered("a\nS\n", "S"), "a\n");
    EXPECT_EQ(filtered("a\nS", "S"), "a");
    EXPECT_EQ(filtered("S\na", "S"), "a");
    EXPECT_EQ(filtered("a\nb\n", "S"), "a\nb\n");
    EXPECT_EQ(filtered("a\nb", "S"), "a\nb");
    EXPECT_EQ(filtered("\n\n", "S"), "\n\n");
    EXPECT_EQ(filtered("", "S"), "");
}

TEST(DuplexSafePageSizes, CountsTheEmptyLineAfterTheLastLineFeed) {
    EXPECT_EQ(filtered("a\n\nb\n", "^$"), "a\nb");
}

TEST(DuplexSafePageSizes, GivesAnEmptyTextWhenNoLineStays) {
    EXPECT_EQ(filtered("a\nb\n", ".*"), "");
    EXPECT_EQ(filtered("S", "S"), "");
}

TEST(DuplexSafePageSizes, AnchorsAtEachLine) {
    EXPECT_EQ(filtered("ab\nba\naa\n", "^a"), "ba\n");
    EXPECT_EQ(filtered("ab\nba\naa\n", "a$"), "ab\n");
}

TEST(DuplexSafePageSizes, SeesTheCarriageReturnAtTheEndOfALine) {
    EXPECT_EQ(filtered("a\r\na\n", "^a$"), "a\r\n");
}

TEST(DuplexSafePageSizes, CaseCounts) {
    EXPECT_EQ(filtered("A\na\n", "A"), "a\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
