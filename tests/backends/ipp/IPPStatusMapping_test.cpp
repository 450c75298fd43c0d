#include "backends/ipp/IPPStatusMapping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ipp/IPPStandardMediaTypes.h"
#include "core_interface/TkCSKeys.h"
#include "tests/backends/ipp/IPPTestMessage.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

OrbCSDeviceAccessories accessories(const IPPTestMessage& answer) {
    const auto status = answer.status();
    const auto* value =
        status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    return value ? *value : OrbCSDeviceAccessories();
}

std::optional<std::string> resolution(const IPPTestMessage& answer) {
    const auto status = answer.status();
    const auto* value =
        status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey);
    return value ? std::optional(value->stringValue()) : std::nullopt;
}

std::optional<OrbCSPensConfiguration> pens(const IPPTestMessage& answer) {
    const auto status = answer.status();
    const auto* value =
        status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    return value ? std::optional(*value) : std::nullopt;
}

std::string penValue(const IPPTestMessage& answer, std::string_view key) {
    const auto configuration = pens(answer);
    if (!configuration) {
        return "no pens";
    }
    const auto value = configuration->PPDAttributeValues.find(key);
    return value == configuration->PPDAttributeValues.end() ? "not reported" : value->second;
}

OrbCustomMediaTypes mediaTypes(const IPPTestMessage& answer) {
    const auto status = answer.status();
    const auto* value = status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
    return value ? *value : OrbCustomMediaTypes();
}

TEST(IPPStatusMapping, NoAnswerIsAnEmptyStatus) {
    const auto status = IPPStatusMapping::statusForAnswer(IPPAnswer(nullptr));
    for (const auto& row : IPPStatusMapping::rows()) {
        EXPECT_EQ(status->statusValueForKey_error(row.statusKey, nullptr), nullptr);
    }
}

TEST(IPPStatusMapping, AnEmptyAnswerReportsNothing) {
    const IPPTestMessage answer;
    std::string error;
    for (const auto& row : IPPStatusMapping::rows()) {
        EXPECT_EQ(answer.status()->statusValueForKey_error(row.statusKey, &error), nullptr);
        EXPECT_EQ(error, "the printer did not report it");
    }
    EXPECT_THAT(answer.status()->droppedValues(), IsEmpty());
}

TEST(IPPStatusMapping, CalibrationAndRemainingPagesAreNeverReported) {
    IPPTestMessage answer;
    answer.keywords("sides-supported", {"one-sided"});
    EXPECT_EQ(answer.status()->statusValueForKey_error(kTkCSLinTableKey, nullptr), nullptr);
    EXPECT_EQ(answer.status()->statusValueForKey_error(kTkCSRemainingPagesEstimationsKey, nullptr),
              nullptr);
}

TEST(IPPStatusMapping, KnowsWhichPrinterItIs) {
    IPPTestMessage answer;
    answer.texts("printer-make-and-model", IPP_TAG_TEXT, {"Zr Office 20 Series"})
        .texts("printer-device-id", IPP_TAG_TEXT, {"MFG:Zr;MDL:Office 20;"});
    const auto identity = OrbCSIdentifiedStatus::identityOf(*answer.status());
    EXPECT_THAT(identity.models, ElementsAre("Zr Office 20 Series"));
    EXPECT_THAT(identity.deviceIDs, ElementsAre("MFG:Zr;MDL:Office 20;"));
    EXPECT_THAT(identity.makers, IsEmpty());
    const auto unnamed = OrbCSIdentifiedStatus::identityOf(*IPPTestMessage().status());
    EXPECT_THAT(unnamed.models, IsEmpty());
    EXPECT_THAT(unnamed.deviceIDs, IsEmpty());
}

TEST(IPPStatusMapping, EveryAttributeOfTheTableIsAskedForOnce) {
    std::vector<std::string> names;
    for (const char* name : IPPStatusMapping::requestedAttributes()) {
        names.emplace_back(name);
    }
    EXPECT_THAT(names, testing::Contains("media-col-database"));
    EXPECT_THAT(names, testing::Not(testing::Contains("all")));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

struct AccessoryCase {
    const char* name;
    std::vector<const char*> sides;
    std::vector<const char*> sources;
    OrbCSDeviceAccessories expected;
};

class Accessories : public testing::TestWithParam<AccessoryCase> {};

TEST_P(Accessories, FollowTheKeywords) {
    IPPTestMessage answer;
    if (!GetParam().sides.empty()) {
        answer.keywords("sides-supported", GetParam().sides);
    }
    if (!GetParam().sources.empty()) {
        answer.keywords("media-source-supported", GetParam().sources);
    }
    EXPECT_EQ(accessories(answer), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    ByAnswer, Accessories,
    testing::Values(
        AccessoryCase{"NothingReported", {}, {}, {}},
        AccessoryCase{"TwoSidedIsADuplexer",
                      {"one-sided", "two-sided-long-edge", "two-sided-short-edge"},
                      {},
                      {{"Duplexer", true}}},
        AccessoryCase{
            "ShortEdgeAloneIsADuplexer", {"two-sided-short-edge"}, {}, {{"Duplexer", true}}},
        AccessoryCase{"OneSidedOnlyIsNone", {"one-sided"}, {}, {{"Duplexer", false}}},
        AccessoryCase{
            "UnknownSidesAloneAreNotReported", {"three-sided", "two-sided-diagonal"}, {}, {}},
        AccessoryCase{"TwoTrays", {}, {"tray-1", "tray-2"}, {{"Tray2", true}}},
        AccessoryCase{
            "AlternateAloneMayBeAnything", {}, {"auto", "main", "alternate"}, {{"Tray2", false}}},
        AccessoryCase{"AWordThatIsNoSideLeavesOpenWhetherThereIsNoDuplexer",
                      {"one-sided", "three-sided"},
                      {},
                      {}},
        AccessoryCase{"OneTray", {}, {"main"}, {{"Tray2", false}}},
        AccessoryCase{"WhatIsNoTray",
                      {},
                      {"auto", "manual", "by-pass-tray", "envelope", "hagaki", "disc", "virtual",
                       "main-roll", "roll-2", "main"},
                      {{"Tray2", false}}},
        AccessoryCase{"TheSameTrayTwice", {}, {"main", "main"}, {{"Tray2", false}}},
        AccessoryCase{"Both",
                      {"two-sided-long-edge"},
                      {"top", "bottom"},
                      {{"Duplexer", true}, {"Tray2", true}}}),
    [](const auto& accessory) { return accessory.param.name; });

TEST(IPPStatusMapping, InputTraysCountWhenSourcesAreNotReported) {
    IPPTestMessage answer;
    answer.octets("printer-input-tray", {"type=sheetFeedAutoRemovableTray;level=10;name=Tray 1;",
                                         "type=sheetFeedAutoRemovableTray;level=10;name=Tray 2;"});
    EXPECT_EQ(accessories(answer), (OrbCSDeviceAccessories{{"Tray2", true}}));
}

TEST(IPPStatusMapping, AManualInputTrayIsNoSecondTray) {
    IPPTestMessage answer;
    answer.octets("printer-input-tray",
                  {"type=sheetFeedAutoRemovableTray;name=Tray 1;",
                   "type=sheetFeedManual;name=Slot;", "type=other;name=Bypass Tray;"});
    EXPECT_EQ(accessories(answer), (OrbCSDeviceAccessories{{"Tray2", false}}));
}

TEST(IPPStatusMapping, InputsThatCannotBeJudgedLeaveOpenWhetherThereIsNoSecondTray) {
    const auto status =
        IPPTestMessage()
            .octets("printer-input-tray", {"garbage", "type=sheetFeedAutoRemovableTray;name=A;"})
            .status();
    EXPECT_EQ(status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey),
              nullptr);
    EXPECT_THAT(status->droppedValues(),
                ElementsAre("printer-input-tray: value 1 has no type, this tray description is "
                            "left out"));
}

TEST(IPPStatusMapping, TwoTraysAreTwoWhateverTheOthersAre) {
    IPPTestMessage answer;
    answer.octets("printer-input-tray", {"garbage", "type=sheetFeedAutoRemovableTray;name=A;",
                                         "type=sheetFeedAutoRemovableTray;name=B;"});
    EXPECT_EQ(accessories(answer), (OrbCSDeviceAccessories{{"Tray2", true}}));
}

TEST(IPPStatusMapping, HalfAPairDoesNotMakeATray) {
    IPPTestMessage noDescription;
    noDescription.keywords("media-source-supported", {"tray-1", "tray-2"})
        .octets("printer-input-tray", {"type=sheetFeedAutoRemovableTray;name=Tray 1;", "garbage"});
    EXPECT_TRUE(accessories(noDescription).empty());
    IPPTestMessage noSource;
    noSource.keywords("media-source-supported", {"tray-1", "by-pass\"tray"})
        .octets("printer-input-tray", {"type=sheetFeedAutoRemovableTray;name=Tray 1;",
                                       "type=sheetFeedAutoRemovableTray;name=Tray 3;"});
    EXPECT_TRUE(accessories(noSource).empty());
    IPPTestMessage feeder;
    feeder.keywords("media-source-supported", {"tray-1", "by-pass-tray"})
        .octets("printer-input-tray", {"type=sheetFeedAutoRemovableTray;name=Tray 1;", "garbage"});
    EXPECT_EQ(accessories(feeder), (OrbCSDeviceAccessories{{"Tray2", false}}));
}

TEST(IPPStatusMapping, SourcesAndDescriptionsAreReadInPairs) {
    IPPTestMessage answer;
    answer.keywords("media-source-supported", {"main", "alternate", "by-pass-tray"})
        .octets("printer-input-tray", {"type=sheetFeedAutoRemovableTray;name=Tray 1;",
                                       "type=sheetFeedManual;name=Tray 2;",
                                       "type=sheetFeedAutoNonRemovableTray;name=Tray 3;"});
    EXPECT_EQ(accessories(answer), (OrbCSDeviceAccessories{{"Tray2", false}}));
}

TEST(IPPStatusMapping, DescriptionsThatAreNoPairsAreLeftOut) {
    IPPTestMessage answer;
    answer.keywords("media-source-supported", {"tray-1", "tray-2"})
        .octets("printer-input-tray", {"type=sheetFeedManual;name=Tray 1;"});
    EXPECT_EQ(accessories(answer), (OrbCSDeviceAccessories{{"Tray2", true}}));
    EXPECT_THAT(answer.status()->droppedValues(),
                ElementsAre("printer-input-tray: has not as many values as "
                            "media-source-supported, the tray descriptions are left out"));
}

TEST(IPPStatusMapping, TheHighestResolutionIsTheLargestOfTheFinerDirections) {
    IPPTestMessage answer;
    answer.resolution("printer-resolution-supported", 600, 2400)
        .resolution("pwg-raster-document-resolution-supported", 1200, 1200)
        .keywords("urf-supported", {"V1.4", "RS300-600", "W8"});
    EXPECT_EQ(resolution(answer), "2400");
}

TEST(IPPStatusMapping, TheHighestResolutionMayStandInTheURFList) {
    IPPTestMessage answer;
    answer.resolution("printer-resolution-supported", 300, 300)
        .keywords("urf-supported", {"RS600-1200-300"});
    EXPECT_EQ(resolution(answer), "1200");
}

TEST(IPPStatusMapping, OneResolutionIsNoHighest) {
    IPPTestMessage answer;
    answer.resolution("printer-resolution-supported", 600, 600)
        .resolution("pwg-raster-document-resolution-supported", 600, 600)
        .keywords("urf-supported", {"RS600"});
    EXPECT_EQ(resolution(answer), std::nullopt);
}

TEST(IPPStatusMapping, DotsPerCentimetreBecomeDotsPerInch) {
    IPPTestMessage answer;
    answer.resolution("printer-resolution-supported", 118, 118, IPP_RES_PER_CM)
        .resolution("pwg-raster-document-resolution-supported", 236, 118, IPP_RES_PER_CM);
    EXPECT_EQ(resolution(answer), "600");
    IPPTestMessage same;
    same.resolution("printer-resolution-supported", 118, 118, IPP_RES_PER_CM)
        .keywords("urf-supported", {"RS300"});
    EXPECT_EQ(resolution(same), std::nullopt);
}

TEST(IPPStatusMapping, WhatIsNoResolutionIsDroppedAndTheRestCounts) {
    IPPTestMessage answer;
    answer.resolution("printer-resolution-supported", 0, 600)
        .resolution("pwg-raster-document-resolution-supported", 600, 600)
        .keywords("urf-supported", {"RS99999999999-x-300"});
    EXPECT_EQ(resolution(answer), "600");
    const std::string URF =
        "urf-supported: value 1 holds what is no resolution, this resolution is left out";
    EXPECT_THAT(answer.status()->droppedValues(),
                ElementsAre("printer-resolution-supported: value 1 is no resolution, this "
                            "resolution is left out",
                            URF, URF));
}

TEST(IPPStatusMapping, PensComeFromTheSupplies) {
    IPPTestMessage answer;
    answer.octets("printer-supply",
                  {"type=inkCartridge;level=80;class=supplyThatIsConsumed;colorantname=cyan;",
                   "type=toner;level=0;class=supplyThatIsConsumed;colorantname=Spot Orange;",
                   "type=wasteToner;level=3;class=receptacleThatIsFilled;colorantname=none;",
                   "type=ink;level=-3;colorantname=none;"});
    answer.texts("printer-supply-description", IPP_TAG_TEXT, {"Cyan", "Orange", "Waste", "Gloss"});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "C,Spot Orange,Gloss");
    EXPECT_EQ(penValue(answer, kTkCSPPDPenInkSufficientKey), "1,0,1");
    EXPECT_EQ(pens(answer)->codeName, std::nullopt);
    EXPECT_EQ(pens(answer)->PPDAttributeValues.size(), 2U);
}

IPPTestMessage markers(std::vector<int> levels) {
    IPPTestMessage answer;
    answer.keywords("marker-types", {"ink-cartridge", "tonerCartridge", "waste-ink", "fuser"})
        .texts("marker-names", IPP_TAG_NAME, {"Cyan Ink", "Black Toner", "Waste", "Fuser"})
        .texts("marker-colors", IPP_TAG_NAME, {"#00FFFF", "none", "none", "none"});
    answer.integers("marker-levels", std::move(levels));
    return answer;
}

TEST(IPPStatusMapping, PensComeFromTheMarkersElse) {
    const auto answer = markers({80, 0, 300, -7});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "C,Black Toner");
    EXPECT_EQ(penValue(answer, kTkCSPPDPenInkSufficientKey), "1,0");
}

TEST(IPPStatusMapping, TheSuppliesGoBeforeTheMarkers) {
    auto answer = markers({80, 5, 1, 1});
    answer.octets("printer-supply", {"type=ink;level=50;colorantname=yellow;",
                                     "type=ink;level=0;colorantname=Spot;"});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "Y,Spot");
    EXPECT_EQ(penValue(answer, kTkCSPPDPenInkSufficientKey), "1,0");
}

TEST(IPPStatusMapping, WhereTheNumbersOfInksDifferTheMarkersAreRight) {
    auto answer = markers({80, 5, 1, 1});
    answer.octets("printer-supply", {"type=ink;level=50;colorantname=yellow;"});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "C,Black Toner");
}

TEST(IPPStatusMapping, ALowLevelIsAWarningAndNotEmpty) {
    auto answer = markers({1, 11, 0, 0});
    answer.integers("marker-low-levels", {18, 18, 0, 0});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenInkSufficientKey), "1,1");
    EXPECT_EQ(penValue(markers({0, 1, 0, 0}), kTkCSPPDPenInkSufficientKey), "0,1");
}

TEST(IPPStatusMapping, SomeLeftAndUnlimitedAreSufficient) {
    EXPECT_EQ(penValue(markers({-1, -3, 0, 0}), kTkCSPPDPenInkSufficientKey), "1,1");
}

TEST(IPPStatusMapping, AnUnknownLevelLeavesSufficiencyUnreported) {
    for (const int unknown : {-2, -7}) {
        const auto answer = markers({80, unknown, 0, 0});
        EXPECT_EQ(penValue(answer, kTkCSPPDPenInkSufficientKey), "not reported") << unknown;
        EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "C,Black Toner");
    }
}

TEST(IPPStatusMapping, MissingLevelsLeaveSufficiencyUnreported) {
    IPPTestMessage answer;
    answer.keywords("marker-types", {"ink"}).texts("marker-names", IPP_TAG_NAME, {"Ink"});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "Ink");
    EXPECT_EQ(penValue(answer, kTkCSPPDPenInkSufficientKey), "not reported");
}

TEST(IPPStatusMapping, ADyeWithACommaLeavesTheDyesUnreported) {
    IPPTestMessage answer;
    answer.keywords("marker-types", {"ink", "ink"})
        .texts("marker-names", IPP_TAG_NAME, {"Cyan", "Black, Photo"});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "no pens");
    EXPECT_THAT(
        answer.status()->droppedValues(),
        ElementsAre("marker-types, value 2: has no usable name, the inks are not reported"));
}

TEST(IPPStatusMapping, AListThatWouldNotFitInALineIsDropped) {
    const std::string longName(121, 'x');
    const std::string other = longName + "y";
    IPPTestMessage answer;
    answer.keywords("marker-types", {"ink", "ink"})
        .texts("marker-names", IPP_TAG_NAME, {longName.c_str(), other.c_str()});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "no pens");
    EXPECT_THAT(answer.status()->droppedValues(),
                ElementsAre("ZrPenDyes: would make a line of more than 255 bytes"));
}

TEST(IPPStatusMapping, WithoutInkOrTonerThereAreNoPens) {
    IPPTestMessage answer;
    answer.keywords("marker-types", {"fuser"}).texts("marker-names", IPP_TAG_NAME, {"Fuser"});
    EXPECT_EQ(pens(answer), std::nullopt);
}

TEST(IPPStatusMapping, NamesAndCustomKeywordsAreCustomMediaTypes) {
    IPPTestMessage answer;
    answer.collections("media-col-database", {{{"media-type", IPP_TAG_KEYWORD, "stationery"}},
                                              {{"media-type", IPP_TAG_NAME, "My Gloss"},
                                               {"media-key", IPP_TAG_NAME, "gloss-1"},
                                               {"media-info", IPP_TAG_TEXT, "Glossy Brochure"}},
                                              {{"media-type", IPP_TAG_NAME, "My Gloss"},
                                               {"media-key", IPP_TAG_NAME, "gloss-2"}},
                                              {{"media-type", IPP_TAG_KEYWORD, "vendor-felt"}},
                                              {{"media-type", IPP_TAG_KEYWORD, "custom-felt"}},
                                              {{"media-type", IPP_TAG_NAME, "stationery"}}});
    const auto types = mediaTypes(answer);
    ASSERT_EQ(types.size(), 2U);
    EXPECT_EQ(types[0]->name(), "Glossy Brochure");
    EXPECT_EQ(types[0]->mediaID(), "gloss-1");
    EXPECT_EQ(types[0]->parentMediaID(), std::nullopt);
    EXPECT_EQ(types[0]->ICCProfile(), nullptr);
    EXPECT_EQ(types[1]->name(), "custom-felt");
    EXPECT_EQ(types[1]->mediaID(), "custom-felt");
}

TEST(IPPStatusMapping, SupportedMediaTypesAreAddedOnce) {
    IPPTestMessage answer;
    answer.collections("media-col-database", {{{"media-type", IPP_TAG_NAME, "My Gloss"}}})
        .texts("media-type-supported", IPP_TAG_NAME, {"stationery", "My Gloss", "My Felt"});
    const auto types = mediaTypes(answer);
    ASSERT_EQ(types.size(), 2U);
    EXPECT_EQ(types[0]->name(), "My Gloss");
    EXPECT_EQ(types[1]->name(), "My Felt");
}

TEST(IPPStatusMapping, OnlyStandardMediaTypesAreAnEmptyList) {
    IPPTestMessage answer;
    answer.keywords("media-type-supported", {"stationery", "photographic-glossy"});
    EXPECT_NE(answer.status()->statusValueForKey_error(kTkCSCustomMediaTypesKey, nullptr), nullptr);
    EXPECT_TRUE(mediaTypes(answer).empty());
}

TEST(IPPStatusMapping, ARefusedTextLeavesItsMediaTypeOut) {
    IPPTestMessage answer;
    answer
        .collections(
            "media-col-database",
            {{{"media-type", IPP_TAG_NAME, "My Gloss"},
              {"media-info", IPP_TAG_TEXT, "Gloss\"\n*cupsFilter: x"}},
             {{"media-type", IPP_TAG_NAME, "My Matte"},
              {"media-info", IPP_TAG_TEXT, "Matte: (x) run"}},
             {{"media-type", IPP_TAG_NAME, "My Canvas"},
              {"media-key", IPP_TAG_NAME, "a;ZrICCProfileId2=Auto"}},
             {{"media-type", IPP_TAG_NAME, "My Silk"}, {"media-key", IPP_TAG_URI, "urn:silk"}},
             {{"media-type", IPP_TAG_NAME, "My Felt"}}})
        .texts("media-type-supported", IPP_TAG_NAME,
               {"My Gloss", "My Matte", "Foo<0A>*cupsFilter: x"});
    const auto types = mediaTypes(answer);
    ASSERT_EQ(types.size(), 1U);
    EXPECT_EQ(types[0]->name(), "My Felt");
    EXPECT_THAT(
        answer.status()->droppedValues(),
        ElementsAre("media-col-database, value 1, media-info: value 1 has the character U+0022 at "
                    "byte 5, so its media type is left out",
                    "media-col-database, value 2, media-info: value 1 has the character U+003A at "
                    "byte 5, so its media type is left out",
                    "media-col-database, value 3, media-key: value 1 has the character U+003B at "
                    "byte 1, so its media type is left out",
                    "media-col-database, value 4, media-key: is no text",
                    "media-type-supported, value 3: the type has the character U+003C at byte 3, "
                    "so its media type is left out"));
}

TEST(IPPStatusMapping, ATypeThatCannotBeAnIDGetsOneThatBelongsToIt) {
    const std::string longType(101, 't');
    IPPTestMessage answer;
    answer.texts("media-type-supported", IPP_TAG_NAME,
                 {"My Gloss", "100% cotton", "Matte/fine", "a", longType.c_str()});
    const auto types = mediaTypes(answer);
    ASSERT_EQ(types.size(), 5U);
    EXPECT_EQ(types[0]->mediaID(), "My Gloss");
    EXPECT_EQ(types[3]->mediaID(), "a");
    // FNV-1a of 64 bits, computed by another program.
    EXPECT_EQ(types[1]->name(), "100% cotton");
    EXPECT_EQ(types[1]->mediaID(), "t-819907a163ad4cb6");
    EXPECT_EQ(types[2]->mediaID(), "t-0860a55f71853dd7");
    EXPECT_THAT(std::string(types[4]->mediaID().value_or("")),
                testing::MatchesRegex("t-[0-9a-f]{16}"));
}

TEST(IPPStatusMapping, AMediaIDThatWouldNotFitInALineDropsTheType) {
    const std::string longKey(101, 'k');
    IPPTestMessage answer;
    answer.collections("media-col-database", {{{"media-type", IPP_TAG_NAME, "My Gloss"},
                                               {"media-key", IPP_TAG_NAME, longKey.c_str()}},
                                              {{"media-type", IPP_TAG_NAME, "My Felt"}}});
    ASSERT_EQ(mediaTypes(answer).size(), 1U);
    EXPECT_EQ(mediaTypes(answer)[0]->name(), "My Felt");
}

TEST(IPPStatusMapping, MoreThan256CustomMediaTypesAreCutOff) {
    std::vector<std::string> names;
    for (int number = 0; number < 300; ++number) {
        names.push_back("Type " + std::to_string(number));
    }
    std::vector<const char*> pointers;
    for (const std::string& name : names) {
        pointers.push_back(name.c_str());
    }
    IPPTestMessage answer;
    answer.texts("media-type-supported", IPP_TAG_NAME, pointers);
    EXPECT_EQ(mediaTypes(answer).size(), 256U);
}

TEST(IPPStatusMapping, NoProfileIsReadSinceANetworkPrinterNamesNoFileOfThisMachine) {
    IPPTestMessage answer;
    answer.texts("media-type-supported", IPP_TAG_NAME, {"My Gloss"})
        .collections("printer-icc-profiles", {{{"profile-name", IPP_TAG_NAME, "q1"},
                                               {"profile-url", IPP_TAG_URI, "file:///etc/shadow"},
                                               {"media-type", IPP_TAG_NAME, "My Gloss"}}});
    const auto types = mediaTypes(answer);
    ASSERT_EQ(types.size(), 1U);
    EXPECT_EQ(types[0]->ICCProfile(), nullptr);
    EXPECT_THAT(IPPStatusMapping::requestedAttributes(),
                testing::Not(testing::Contains(testing::StrEq("printer-icc-profiles"))));
}

TEST(IPPStatusMapping, AListOfDyesThatCouldBeginAKeywordIsDropped) {
    IPPTestMessage answer;
    answer.keywords("marker-types", {"ink", "ink"})
        .texts("marker-names", IPP_TAG_NAME, {"Cyan", "*UIConstraints"});
    EXPECT_EQ(penValue(answer, kTkCSPPDPenDyesKey), "no pens");
    EXPECT_THAT(
        answer.status()->droppedValues(),
        ElementsAre("marker-names, value 2: has the character U+002A at byte 0, this text "
                    "is left out",
                    "marker-types, value 2: has no usable name, the inks are not reported"));
}

TEST(IPPStatusMapping, OutOfBandValuesAreNotReportedAndNoFault) {
    IPPTestMessage answer;
    ippAddOutOfBand(answer.get(), IPP_TAG_PRINTER, IPP_TAG_NOVALUE, "sides-supported");
    ippAddOutOfBand(answer.get(), IPP_TAG_PRINTER, IPP_TAG_UNKNOWN, "media-source-supported");
    EXPECT_TRUE(accessories(answer).empty());
    EXPECT_THAT(answer.status()->droppedValues(), IsEmpty());
}

TEST(IPPStatusMapping, AttributesOfAnotherGroupDoNotCount) {
    IPPTestMessage answer;
    ippAddString(answer.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "sides-supported", nullptr,
                 "two-sided-long-edge");
    EXPECT_TRUE(accessories(answer).empty());
}

TEST(IPPStatusMapping, TheFirstOfARepeatedAttributeCountsUnlessTheOtherCouldSayMore) {
    IPPTestMessage two;
    two.keywords("sides-supported", {"two-sided-long-edge"})
        .keywords("sides-supported", {"one-sided"});
    EXPECT_EQ(accessories(two), (OrbCSDeviceAccessories{{"Duplexer", true}}));
    IPPTestMessage answer;
    answer.keywords("sides-supported", {"one-sided"})
        .keywords("sides-supported", {"two-sided-long-edge"});
    EXPECT_TRUE(accessories(answer).empty());
    EXPECT_THAT(answer.status()->droppedValues(),
                ElementsAre("sides-supported: is given twice; the first counts"));
}

std::vector<OrbCSStatusSource> sourcesOf(const IPPTestMessage& answer, std::string_view entry) {
    return OrbCSStatusSources::sourcesOf(
        *IPPStatusMapping::statusForAnswer(IPPAnswer(answer.get())), entry);
}

TEST(IPPStatusMapping, TheAttributesOfTheAnswerAreItsSources) {
    IPPTestMessage answer;
    answer.keywords("sides-supported", {"one-sided", "two-sided-long-edge"})
        .keywords("media-source-supported", {"main"})
        .integers("marker-levels", {80, -3})
        .resolution("printer-resolution-supported", 600, 300)
        .collections("media-col-database", {{{"media-type", IPP_TAG_NAME, "Gloss"}}});
    using Sources = std::vector<OrbCSStatusSource>;
    EXPECT_EQ(sourcesOf(answer, "DeviceAccessories.Duplexer"),
              (Sources{{"DeviceAccessories.Duplexer", "sides-supported",
                        "one-sided,two-sided-long-edge"}}));
    EXPECT_EQ(sourcesOf(answer, "DeviceAccessories.Tray2"),
              (Sources{{"DeviceAccessories.Tray2", "media-source-supported", "main"}}));
    EXPECT_EQ(sourcesOf(answer, "InstalledPensConfiguration.ZrPenDyes"),
              (Sources{{"InstalledPensConfiguration", "marker-levels", "80,-3"}}));
    EXPECT_EQ(sourcesOf(answer, "MaxSupportedResolution"),
              (Sources{{"MaxSupportedResolution", "printer-resolution-supported", "600x300dpi"}}));
    EXPECT_EQ(sourcesOf(answer, "CustomMediaTypes"),
              (Sources{{"CustomMediaTypes", "media-col-database", "{media-type=Gloss}"}}));
    EXPECT_EQ(sourcesOf(answer, "LinTable"), Sources());
}

TEST(IPPStatusMapping, ASourceIsCutToWhatAnybodyIsShown) {
    IPPTestMessage answer;
    const std::string exactly(IPPStatusMapping::kLongestSource, 'x');
    answer.keywords("sides-supported", {exactly.c_str()})
        .keywords("media-source-supported", {exactly.c_str(), "y"});
    EXPECT_EQ(sourcesOf(answer, "DeviceAccessories.Duplexer").at(0).value, exactly);
    EXPECT_EQ(sourcesOf(answer, "DeviceAccessories.Tray2").at(0).value, exactly.substr(3) + "...");
}

TEST(IPPStatusMapping, AnAttributeOfAnotherGroupIsNoSource) {
    IPPTestMessage answer;
    ippAddString(answer.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "sides-supported", nullptr,
                 "two-sided-long-edge");
    EXPECT_TRUE(sourcesOf(answer, "DeviceAccessories").empty());
    answer.keywords("sides-supported", {"one-sided"});
    EXPECT_EQ(sourcesOf(answer, "DeviceAccessories").at(0).value, "one-sided");
}

TEST(IPPStatusMapping, TheReasonsForDroppedValuesAreBounded) {
    const std::vector<const char*> values(5000, "three-sided");
    IPPTestMessage answer;
    answer.keywords("sides-supported", values);
    EXPECT_EQ(answer.status()->droppedValues().size(), 101U);
    EXPECT_EQ(answer.status()->droppedValues().back(), "more values were dropped");
}

/// An answer, and the entries that it tells.
struct ToldCase {
    std::string name;
    std::function<void(IPPTestMessage&)> fill;
    OrbCSToldEntries told;
};

void PrintTo(const ToldCase& each, std::ostream* stream) {
    *stream << each.name;
}

class Told : public testing::TestWithParam<ToldCase> {};

TEST_P(Told, IsWhatTheAnswerHolds) {
    IPPTestMessage answer;
    GetParam().fill(answer);
    EXPECT_EQ(answer.status()->toldEntries(), GetParam().told);
}

const std::string kPens = "InstalledPensConfiguration.";

INSTANTIATE_TEST_SUITE_P(
    ByAnswer, Told,
    testing::Values(
        ToldCase{"NothingByAnEmptyAnswer", [](auto&) {}, {}},
        ToldCase{"NothingByOutOfBandValues",
                 [](auto& answer) {
                     ippAddOutOfBand(answer.get(), IPP_TAG_PRINTER, IPP_TAG_NOVALUE,
                                     "media-type-supported");
                     ippAddOutOfBand(answer.get(), IPP_TAG_PRINTER, IPP_TAG_UNKNOWN,
                                     "sides-supported");
                 },
                 {}},
        ToldCase{"BothAccessories",
                 [](auto& answer) {
                     answer.keywords("sides-supported", {"one-sided"})
                         .keywords("media-source-supported", {"main"});
                 },
                 {"DeviceAccessories"}},
        ToldCase{"TheDuplexerAlone",
                 [](auto& answer) { answer.keywords("sides-supported", {"one-sided"}); },
                 {"DeviceAccessories.Duplexer"}},
        ToldCase{"TheTrayAlone",
                 [](auto& answer) { answer.keywords("media-source-supported", {"main"}); },
                 {"DeviceAccessories.Tray2"}},
        ToldCase{"NoDuplexerBesideARefusedSide",
                 [](auto& answer) {
                     answer.keywords("sides-supported", {"one-sided", "two\"sided"});
                 },
                 {}},
        ToldCase{"ADuplexerWhateverElseIsRefused",
                 [](auto& answer) {
                     answer.keywords("sides-supported", {"two-sided-long-edge", "two\"sided"});
                 },
                 {"DeviceAccessories.Duplexer"}},
        ToldCase{"NoSingleTrayBesideARefusedSource",
                 [](auto& answer) {
                     answer.keywords("media-source-supported", {"main", "tray\"2"});
                 },
                 {}},
        ToldCase{"TwoTraysWhateverElseIsRefused",
                 [](auto& answer) {
                     answer.keywords("media-source-supported", {"main", "bottom", "tray\"2"});
                 },
                 {"DeviceAccessories.Tray2"}},
        ToldCase{"TheHighestResolutionOfSeveral",
                 [](auto& answer) {
                     answer.resolution("printer-resolution-supported", 600, 600)
                         .keywords("urf-supported", {"RS300"});
                 },
                 {"MaxSupportedResolution"}},
        ToldCase{"NoResolutionByOne",
                 [](auto& answer) { answer.resolution("printer-resolution-supported", 600, 600); },
                 {}},
        ToldCase{"NoResolutionBesideOneThatIsNone",
                 [](auto& answer) {
                     answer.resolution("printer-resolution-supported", 600, 600)
                         .keywords("urf-supported", {"RS300-many"});
                 },
                 {}},
        ToldCase{"PensWithTheirLevels",
                 [](auto& answer) {
                     answer.keywords("marker-types", {"ink"})
                         .texts("marker-names", IPP_TAG_NAME, {"Cyan"})
                         .integers("marker-levels", {40});
                 },
                 {kPens + "ZrPenDyes", kPens + "ZrPenInkSufficient"}},
        ToldCase{"PensWithoutLevels",
                 [](auto& answer) {
                     answer.keywords("marker-types", {"ink"})
                         .texts("marker-names", IPP_TAG_NAME, {"Cyan"})
                         .integers("marker-levels", {-2});
                 },
                 {kPens + "ZrPenDyes"}},
        ToldCase{"NoDyesOfWhichOneHasNoName",
                 [](auto& answer) {
                     answer.keywords("marker-types", {"ink", "ink"})
                         .texts("marker-names", IPP_TAG_NAME, {"Cyan", "a,b"})
                         .integers("marker-levels", {40, 40});
                 },
                 {}},
        ToldCase{"NoDyesThatDoNotFitInALine",
                 [](auto& answer) {
                     static const std::string name(250, 'x');
                     answer.keywords("marker-types", {"ink"})
                         .texts("marker-names", IPP_TAG_NAME, {name.c_str()})
                         .integers("marker-levels", {40});
                 },
                 {}},
        ToldCase{"NoPensWhereThereIsNeitherInkNorToner",
                 [](auto& answer) {
                     answer.keywords("marker-types", {"fuser"})
                         .texts("marker-names", IPP_TAG_NAME, {"Fuser"});
                 },
                 {}},
        ToldCase{"PensOfWhichADescriptionIsRefusedThatNobodyNeeds",
                 [](auto& answer) {
                     answer.octets("printer-supply", {"type=ink;level=40;colorantname=cyan;"})
                         .texts("printer-supply-description", IPP_TAG_TEXT, {"Ink \"XL\""});
                 },
                 {kPens + "ZrPenDyes", kPens + "ZrPenInkSufficient"}},
        ToldCase{"NoMediaTypesAmongStandardOnes",
                 [](auto& answer) { answer.keywords("media-type-supported", {"stationery"}); },
                 {"CustomMediaTypes"}},
        ToldCase{
            "NoMediaTypesWhereNoneIsNamed",
            [](auto& answer) {
                answer.collections("media-col-database", {{{"media-info", IPP_TAG_TEXT, "A4"}}});
            },
            {}},
        ToldCase{"SomeMediaTypesBesideARefusedOne",
                 [](auto& answer) {
                     answer.collections("media-col-database",
                                        {{{"media-type", IPP_TAG_NAME, "Gloss"}},
                                         {{"media-type", IPP_TAG_NAME, "Other"},
                                          {"media-info", IPP_TAG_TEXT, "a: b"}}});
                 },
                 {"CustomMediaTypes.reported"}}),
    [](const auto& each) { return each.param.name; });

TEST(IPPStatusMapping, MediaTypesOfAnAnswerThatWasNotAskedForAllAreSome) {
    IPPTestMessage answer;
    answer.keywords("media-type-supported", {"my-gloss"});
    DroppedValues dropped;
    dropped.markIncomplete("media-col-database");
    const auto status =
        IPPStatusMapping::statusForAnswer(IPPAnswer(answer.get(), std::move(dropped)));
    EXPECT_EQ(status->toldEntries(), OrbCSToldEntries{"CustomMediaTypes.reported"});
    EXPECT_THAT(status->droppedValues(), IsEmpty());
}

TEST(DroppedValuesTest, KnowsTheAttributesHoweverManyReasonsThereAre) {
    DroppedValues dropped;
    for (std::size_t value = 1; value <= 200; ++value) {
        dropped.add("urf-supported", value, "is nothing");
    }
    dropped.add("media-col-database, value 3, media-info", 1, "is nothing");
    EXPECT_TRUE(dropped.areFrom({"sides-supported", "urf-supported"}));
    EXPECT_TRUE(dropped.areFrom({"media-col-database"}));
    EXPECT_FALSE(dropped.areFrom({"sides-supported", "media-col"}));
    EXPECT_EQ(dropped.takeReasons().size(), 101U);
}

TEST(IPPStandardMediaTypes, AreKnownExactly) {
    for (const char* keyword : {"auto", "stationery", "photographic-glossy", "wet-film",
                                "stationery-recycled", "cardstock-lightweight-coated"}) {
        EXPECT_TRUE(isStandardMediaType(keyword)) << keyword;
    }
    for (const char* keyword : {"", "Stationery", "stationery-x", "gloss"}) {
        EXPECT_FALSE(isStandardMediaType(keyword)) << keyword;
    }
}

TEST(IPPStandardMediaTypes, AreThoseOfTheFileOfFacts) {
    std::ifstream facts(TKPPDUPDATING_SOURCE_DIR "/backends/ipp/MediaTypeKeywords.txt");
    std::vector<std::string_view> expected;
    std::vector<std::string> lines;
    for (std::string line; std::getline(facts, line);) {
        lines.push_back(line);
    }
    for (const std::string& line : lines) {
        if (!line.starts_with('#')) {
            expected.emplace_back(line);
        }
    }
    const auto known = standardMediaTypes();
    EXPECT_THAT(std::vector<std::string_view>(known.begin(), known.end()),
                testing::ElementsAreArray(expected));
    // As many as the registry had at the date that the file names.
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines.front().ends_with("2025-10: 135.")) << lines.front();
    EXPECT_EQ(known.size(), 135U);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
