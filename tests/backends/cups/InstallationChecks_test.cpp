#include "backends/cups/InstallationChecks.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "manager/OrbClassTable.h"
#include "tests/support/NamedText.h"
#include "updaters/default_choice/OrbPPDDefaultChoiceUpdater.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr const char* kBefore =
    "*PPD-Adobe: \"4.3\"\n"
    "*cupsFilter: \"a 0 b\"\n"
    "*OpenUI *MediaType/Media: PickOne\n"
    "*DefaultMediaType: Plain\n"
    "*MediaType Plain/Plain: \"\"\n"
    "*MediaType Photo/Photo: \"\"\n"
    "*CloseUI: *MediaType\n"
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
    "*CloseGroup: ZrTwoSidedPrinting\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

std::set<std::string, std::less<>> ownedOptions(const OrbPPDFile& PPD) {
    return InstallationChecks::ownedOptions(OrbPPDConcreteUpdatingManager(), PPD);
}

std::optional<std::string> reasonFor(const std::string& afterText) {
    const auto before = PPDModelFile::fileWithText(makePPDText(kBefore));
    const auto after = PPDModelFile::fileWithText(makePPDText(afterText));
    return InstallationChecks::reasonNotToInstall(*before, *after, ownedOptions(*before));
}

TEST(InstallationChecks, TheSameTextMayBeInstalled) {
    EXPECT_EQ(reasonFor(kBefore), std::nullopt);
}

TEST(InstallationChecks, TheOptionsOfApplicableUpdatersAreOwned) {
    const auto PPD = PPDModelFile::fileWithText(makePPDText(kBefore));
    EXPECT_EQ(ownedOptions(*PPD), (std::set<std::string, std::less<>>{"ZrLowerTrayInstalled"}));
}

/// An application's own class for the option "MediaType".
class MediaTypeUpdater : public OrbPPDDefaultChoiceUpdater {
  public:
    static constexpr std::string_view kClassName = "MediaTypeUpdater";

    std::vector<std::string> optionNames() override { return {"MediaType"}; }
    std::optional<OrbPPDDefaultChoices> defaultChoicesFromDeviceWithURI_context(
        std::optional<std::string_view> /*deviceURI*/, OrbDictionary* /*context*/) override {
        return OrbPPDDefaultChoices{{"MediaType", "Photo"}};
    }
};

TEST(InstallationChecks, TheOptionsOfAnApplicationsOwnUpdaterAreOwned) {
    const auto PPD = PPDModelFile::fileWithText(makePPDText(kBefore));
    OrbPPDConcreteUpdatingManager manager;
    manager.registerUpdaterClass(&OrbClassOf<MediaTypeUpdater>());
    EXPECT_EQ(InstallationChecks::ownedOptions(manager, *PPD),
              (std::set<std::string, std::less<>>{"MediaType", "ZrLowerTrayInstalled"}));
}

TEST(InstallationChecks, TheOptionOfAnUpdaterThatDoesNotRunIsTheUsers) {
    const auto PPD = PPDModelFile::fileWithText(makePPDText(kBefore));
    OrbPPDConcreteUpdatingManager manager;
    manager.unregisterUpdaterClass(OrbClassFromName("OrbPPDLowerTrayInstalledUpdater"));
    EXPECT_EQ(InstallationChecks::ownedOptions(manager, *PPD),
              (std::set<std::string, std::less<>>()));
}

TEST(InstallationChecks, AnOwnedDefaultMayChange) {
    EXPECT_EQ(reasonFor(replaced(kBefore, "*DefaultZrLowerTrayInstalled: False",
                                 "*DefaultZrLowerTrayInstalled: True")),
              std::nullopt);
}

TEST(InstallationChecks, TheUsersDefaultMayNotChange) {
    EXPECT_EQ(reasonFor(replaced(kBefore, "*DefaultMediaType: Plain", "*DefaultMediaType: Photo")),
              "the default of MediaType would be lost, which belongs to the user");
}

TEST(InstallationChecks, TheUsersDefaultMayNotGo) {
    EXPECT_EQ(reasonFor(replaced(kBefore, "*DefaultMediaType: Plain\n", "")),
              "the default of MediaType would be lost, which belongs to the user");
}

TEST(InstallationChecks, TheChoiceThatIsTheUsersDefaultMayNotGo) {
    EXPECT_EQ(reasonFor(replaced(kBefore, "*MediaType Plain/Plain: \"\"\n", "")),
              "the default of MediaType would be lost, which belongs to the user");
}

TEST(InstallationChecks, AChoiceThatIsNoDefaultMayGo) {
    EXPECT_EQ(reasonFor(replaced(kBefore, "*MediaType Photo/Photo: \"\"\n", "")), std::nullopt);
}

TEST(InstallationChecks, ADefaultThatNamedNoChoiceMayStay) {
    const auto PPD = PPDModelFile::fileWithText(
        makePPDText(replaced(kBefore, "*DefaultMediaType: Plain", "*DefaultMediaType: Unknown")));
    EXPECT_EQ(InstallationChecks::reasonNotToInstall(*PPD, *PPD, {}), std::nullopt);
}

TEST(InstallationChecks, TheTwoSidedGroupMayGoAsAWhole) {
    const std::string text = kBefore;
    const std::size_t group = text.find("*OpenGroup: ZrTwoSidedPrinting");
    EXPECT_EQ(reasonFor(text.substr(0, group)), std::nullopt);
}

TEST(InstallationChecks, TheDefaultOfAKeptDuplexOptionMayNotChange) {
    EXPECT_NE(reasonFor(replaced(kBefore, "*DefaultDuplex: None", "*DefaultDuplex: On")),
              std::nullopt);
}

class ProgramLines : public testing::TestWithParam<NamedText> {};

TEST_P(ProgramLines, MayNotBeNew) {
    EXPECT_NE(reasonFor(std::string(kBefore) + GetParam().text + "\n"), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    ByKeyword, ProgramLines,
    testing::Values(NamedText{"cupsFilter", "*cupsFilter: \"x 0 /bin/sh\""},
                    NamedText{"cupsFilter2", "*cupsFilter2: \"x y 0 z\""},
                    NamedText{"CUPSFILTERInCapitals", "*CUPSFILTER: \"x 0 z\""},
                    NamedText{"cupsPreFilter", "*cupsPreFilter: \"x 0 z\""},
                    NamedText{"cupsPortMonitor", "*cupsPortMonitor socket: \"z\""},
                    NamedText{"APPrinterPreset", "*APPrinterPreset x: \"y\""},
                    NamedText{"FoomaticRIP", "*FoomaticRIPCommandLine: \"z\""},
                    NamedText{"OneThatIsThereOnceMore", "*cupsFilter: \"a 0 b\""},
                    NamedText{"BehindACarriageReturn", "*% comment\r*cupsFilter: \"x 0 z\""}),
    nameOfCase);

TEST(InstallationChecks, AProgramLineThatWasThereMayStayOrGo) {
    EXPECT_EQ(reasonFor(replaced(kBefore, "*cupsFilter: \"a 0 b\"\n", "")), std::nullopt);
}

TEST(InstallationChecks, AProgramLineInsideOfAQuotedValueCounts) {
    EXPECT_EQ(reasonFor(std::string(kBefore) + "*Text: \"\n*cupsFilter: x\n\"\n*End\n"),
              "it would get a new line of cupsFilter");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
