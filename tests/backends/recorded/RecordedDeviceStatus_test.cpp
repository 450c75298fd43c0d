#include "backends/recorded/RecordedDeviceStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::shared_ptr<const RecordedDeviceStatus> statusFor(std::string_view JSON) {
    std::string error;
    auto status = RecordedDeviceStatus::statusWithJSON(JSON, error);
    EXPECT_TRUE(status) << error << " in: " << JSON;
    return status;
}

std::string errorFor(std::string_view JSON) {
    std::string error;
    EXPECT_FALSE(RecordedDeviceStatus::statusWithJSON(JSON, error)) << JSON;
    return error;
}

OrbCSNumberOrString whole(std::int64_t number) {
    return OrbCSNumberOrString(number);
}

/// The one custom media type of a recording with these members.
std::shared_ptr<const OrbCustomMediaType> mediaTypeWith(const std::string& members) {
    const auto status = statusFor(R"({"CustomMediaTypes": [{)" + members + "}]}");
    const auto* types =
        status ? status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey) : nullptr;
    return types && types->size() == 1 ? types->front() : nullptr;
}

std::shared_ptr<const OrbICCProfile> profileWith(const std::string& members) {
    const auto type = mediaTypeWith(R"("ICCProfile": {)" + members + "}");
    EXPECT_TRUE(type);
    return type ? type->ICCProfile() : nullptr;
}

TEST(RecordedDeviceStatus, TellsWhichMembersWereIgnoredAndWhichThereMayBe) {
    const auto status = statusFor(R"({"DeviceAccessories": [{"name": "Duplexer", "isInstaled": 1}],
        "InstalledPensConfiguration": {"codename": "", "PPDAttributeValues": {"Anything": ""}},
        "LinTable": {"time": 0}, "Comment": {"name": "of nobody"},
        "CustomMediaTypes": [{"name": "A"}, {"ICCProfile": {"a b": 0}}]})");
    std::vector<std::string> places;
    for (const auto& ignored : status->ignoredMembers()) {
        places.push_back(ignored.place + " " + ignored.name);
    }
    EXPECT_THAT(
        places,
        ElementsAre("DeviceAccessories[0].isInstaled isInstaled",
                    "InstalledPensConfiguration.codename codename", "LinTable.time time",
                    "CustomMediaTypes[1].ICCProfile.(an unprintable name) a b", "Comment Comment"));
    EXPECT_THAT(status->ignoredMembers()[0].known, ElementsAre("name", "isInstalled"));
    EXPECT_THAT(status->ignoredMembers()[3].known,
                ElementsAre("URL", "qualifierVer2", "profileID"));
    EXPECT_THAT(status->ignoredMembers()[4].known, testing::Contains("CustomMediaTypes"));
    EXPECT_THAT(status->ignoredMembers()[4].known, testing::Contains("Told"));
}

TEST(RecordedDeviceStatus, TellsNoMoreThanAHundredIgnoredMembers) {
    std::string members = "\"Told\": []";
    for (int i = 0; i < 200; ++i) {
        members += ", \"a" + std::to_string(i) + "\": 0";
    }
    EXPECT_THAT(statusFor("{" + members + "}")->ignoredMembers(), SizeIs(100));
}

TEST(RecordedDeviceStatus, ReadsAccessories) {
    const auto status = statusFor(R"({"DeviceAccessories": [
        {"name": "Duplexer", "isInstalled": true}, {"name": "Tray2", "isInstalled": false},
        {"name": "Stapler"}, {"isInstalled": true}, {}]})");
    EXPECT_THAT(
        *status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey),
        ElementsAre(OrbCSDeviceAccessory{"Duplexer", true}, OrbCSDeviceAccessory{"Tray2", false},
                    OrbCSDeviceAccessory{"Stapler", false},
                    OrbCSDeviceAccessory{std::nullopt, true}, OrbCSDeviceAccessory{}));
}

TEST(RecordedDeviceStatus, ReadsAnEmptyListAsAReportOfNone) {
    const auto status = statusFor(R"({"DeviceAccessories": [], "CustomMediaTypes": []})");
    const auto* accessories =
        status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
    ASSERT_TRUE(accessories);
    EXPECT_THAT(*accessories, IsEmpty());
    const auto* types = status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
    ASSERT_TRUE(types);
    EXPECT_THAT(*types, IsEmpty());
}

TEST(RecordedDeviceStatus, ReadsThePensConfiguration) {
    const auto status = statusFor(R"({"InstalledPensConfiguration": {"codeName": "FourPens",
        "PPDAttributeValues": {"ZrPenDyes": "C,M,Y,K", "ZrPenDropVolumes": "", "ZrOther": null}}})");
    const auto* pens =
        status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    ASSERT_TRUE(pens);
    EXPECT_EQ(*pens, (OrbCSPensConfiguration{
                         "FourPens", {{"ZrPenDyes", "C,M,Y,K"}, {"ZrPenDropVolumes", ""}}}));
}

TEST(RecordedDeviceStatus, ReadsAPensConfigurationWithoutMembers) {
    for (const char* JSON : {R"({"InstalledPensConfiguration": {}})",
                             R"({"InstalledPensConfiguration":
                                 {"codeName": null, "PPDAttributeValues": null}})"}) {
        const auto* pens = statusFor(JSON)->statusValueForKey<OrbCSPensConfiguration>(
            kTkCSInstalledPensConfigurationKey);
        EXPECT_TRUE(pens) << JSON;
    }
    const auto status = statusFor(R"({"InstalledPensConfiguration": {}})");
    EXPECT_EQ(
        *status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey),
        OrbCSPensConfiguration{});
}

TEST(RecordedDeviceStatus, ReadsTheLinearizationTable) {
    const auto calibrated = statusFor(R"({"LinTable": {"timestamp": 252532800}})");
    EXPECT_EQ(calibrated->statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey)->timestamp,
              whole(252532800));
    const auto silent = statusFor(R"({"LinTable": {}})");
    EXPECT_EQ(silent->statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey)->timestamp, std::nullopt);
}

TEST(RecordedDeviceStatus, ReadsTheResolutionAsANumberOrAString) {
    const std::vector<std::pair<std::string, OrbCSNumberOrString>> cases{
        {"1200", whole(1200)},
        {"-1", whole(-1)},
        {"-0", whole(0)},
        {"0.5", OrbCSNumberOrString(0.5)},
        {"9223372036854775807", whole(INT64_MAX)},
        {"-9223372036854775808", whole(INT64_MIN)},
        {"9223372036854775808", OrbCSNumberOrString(std::uint64_t{9223372036854775808U})},
        {"18446744073709551615", OrbCSNumberOrString(UINT64_MAX)},
        {"18446744073709551616", OrbCSNumberOrString(18446744073709551616.0)},
        {"1e300", OrbCSNumberOrString(1e300)},
        {"\"1200\"", OrbCSNumberOrString(std::string("1200"))},
        {"\"600x1200dpi\"", OrbCSNumberOrString(std::string("600x1200dpi"))},
        {"\"\"", OrbCSNumberOrString(std::string())}};
    for (const auto& [JSON, expected] : cases) {
        const auto status = statusFor("{\"MaxSupportedResolution\": " + JSON + "}");
        EXPECT_EQ(*status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey),
                  expected)
            << JSON;
    }
}

TEST(RecordedDeviceStatus, ReadsAWholeNumberAlikeHoweverItIsWritten) {
    for (const char* JSON : {"1200", "1200.0", "1.2e3", "12000e-1"}) {
        const auto status = statusFor(std::string("{\"MaxSupportedResolution\": ") + JSON + "}");
        EXPECT_EQ(*status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey),
                  whole(1200))
            << JSON;
    }
    const auto large = statusFor(R"({"MaxSupportedResolution": 1e19})");
    EXPECT_EQ(*large->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey),
              OrbCSNumberOrString(std::uint64_t{10'000'000'000'000'000'000U}));
}

TEST(RecordedDeviceStatus, ReadsPageEstimations) {
    const auto status = statusFor(R"({"RemainingPagesEstimations": [
        {"pageTypeName": "A", "minPageCount": 150, "maxPageCount": 300.5, "state": 0},
        {"pageTypeName": null, "state": -3}]})");
    EXPECT_THAT(
        *status->statusValueForKey<OrbCSRemainingPagesEstimations>(
            kTkCSRemainingPagesEstimationsKey),
        ElementsAre(
            OrbCSRemainingPagesEstimation{"A", whole(150), OrbCSNumberOrString(300.5), whole(0)},
            OrbCSRemainingPagesEstimation{std::nullopt, std::nullopt, std::nullopt, whole(-3)}));
}

TEST(RecordedDeviceStatus, ReadsCustomMediaTypes) {
    const auto type = mediaTypeWith(R"("name": "Glossy Brochure", "mediaID": "1201",
        "parentMediaID": "3", "ICCProfile": {"URL": "file:///profiles/gloss.icc",
        "qualifierVer2": "q1", "profileID": 7})");
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), "Glossy Brochure");
    EXPECT_EQ(type->mediaID(), "1201");
    EXPECT_EQ(type->parentMediaID(), "3");
    ASSERT_TRUE(type->ICCProfile());
    EXPECT_EQ(type->ICCProfile()->URL(), "file:///profiles/gloss.icc");
    EXPECT_EQ(type->ICCProfile()->qualifierVer2(), "q1");
    EXPECT_EQ(type->ICCProfile()->profileID(), 7U);
}

TEST(RecordedDeviceStatus, ReadsACustomMediaTypeWithoutMembers) {
    const auto type = mediaTypeWith("");
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), std::nullopt);
    EXPECT_EQ(type->mediaID(), std::nullopt);
    EXPECT_EQ(type->parentMediaID(), std::nullopt);
    EXPECT_FALSE(type->ICCProfile());
}

TEST(RecordedDeviceStatus, AProfileNeedsAURLAndAQualifierOrANumber) {
    EXPECT_TRUE(profileWith(R"("URL": "file:///p", "qualifierVer2": "q")"));
    EXPECT_TRUE(profileWith(R"("URL": "file:///p", "profileID": 0)"));
    EXPECT_FALSE(profileWith(R"("URL": "file:///p")"));
    EXPECT_FALSE(profileWith(R"("qualifierVer2": "q", "profileID": 7)"));
    EXPECT_FALSE(profileWith(R"("URL": null, "qualifierVer2": "q")"));
    EXPECT_FALSE(profileWith(""));
}

TEST(RecordedDeviceStatus, ReadsAProfileNumberOfSixtyFourBits) {
    const auto largest = profileWith(R"("URL": "file:///p", "profileID": 18446744073709551615)");
    ASSERT_TRUE(largest);
    EXPECT_EQ(largest->profileID(), UINT64_MAX);
    EXPECT_EQ(profileWith(R"("URL": "file:///p", "profileID": 7.0)")->profileID(), 7U);
}

TEST(RecordedDeviceStatus, AMissingOrNullMemberIsNotReported) {
    for (const char* JSON :
         {"{}",
          R"({"DeviceAccessories": null, "InstalledPensConfiguration": null, "LinTable": null,
              "MaxSupportedResolution": null, "RemainingPagesEstimations": null,
              "CustomMediaTypes": null})"}) {
        const auto status = statusFor(JSON);
        for (const std::string_view key :
             {kTkCSDeviceAccessoriesKey, kTkCSInstalledPensConfigurationKey, kTkCSLinTableKey,
              kTkCSMaxSupportedResolutionKey, kTkCSRemainingPagesEstimationsKey,
              kTkCSCustomMediaTypesKey}) {
            std::string error;
            EXPECT_FALSE(status->statusValueForKey_error(key, &error)) << key;
            EXPECT_EQ(error, "the printer did not report it");
            EXPECT_FALSE(status->statusValueForKey_error(key, nullptr)) << key;
        }
    }
}

TEST(RecordedDeviceStatus, TellsEverythingUnlessItSaysWhat) {
    for (const char* JSON : {"{}", R"({"Told": null})", R"({"LinTable": {}})"}) {
        EXPECT_EQ(statusFor(JSON)->toldEntries(), std::nullopt) << JSON;
    }
    EXPECT_EQ(statusFor(R"({"Told": []})")->toldEntries(), OrbCSToldEntries());
    EXPECT_EQ(statusFor(R"({"Told": ["LinTable", "DeviceAccessories.Duplexer", "LinTable", "Any"],
                            "DeviceAccessories": []})")
                  ->toldEntries(),
              (OrbCSToldEntries{"Any", "DeviceAccessories.Duplexer", "LinTable"}));
}

TEST(RecordedDeviceStatus, NamesThePlaceOfAWrongTypeInWhatItTells) {
    EXPECT_EQ(errorFor(R"({"Told": "LinTable"})"), "Told: expected an array, found a string");
    EXPECT_EQ(errorFor(R"({"Told": {}})"), "Told: expected an array, found an object");
    EXPECT_EQ(errorFor(R"({"Told": ["LinTable", 7]})"),
              "Told[1]: expected a string, found a number");
    EXPECT_EQ(errorFor(R"({"Told": [null]})"), "Told[0]: expected a string, found null");
}

TEST(RecordedDeviceStatus, IgnoresOtherMembersWhateverTheirType) {
    const auto status = statusFor(R"({"Comment": ["any", {"thing": 1}], "deviceaccessories": 7,
        "LinTable": {"timestamp": 1, "other": "x\n"}, "DeviceAccessories": [{"name": 
        "Tray2", "level": {}}]})");
    EXPECT_EQ(status->statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey)->timestamp, whole(1));
    EXPECT_THAT(status->droppedValues(), IsEmpty());
    EXPECT_FALSE(status->statusValueForKey_error("Comment", nullptr));
}

TEST(RecordedDeviceStatus, OfMembersOfOneNameTheLastCounts) {
    const auto status =
        statusFor(R"({"LinTable": 7, "LinTable": {"timestamp": 1, "timestamp": 2}})");
    EXPECT_EQ(status->statusValueForKey<OrbCSLinTable>(kTkCSLinTableKey)->timestamp, whole(2));
}

/// A recording with a value of another type, and what is said of it.
const std::vector<std::pair<std::string_view, std::string>> kWrongTypes{
    {"[]", "the recording: expected an object, found an array"},
    {"7", "the recording: expected an object, found a number"},
    {"\"x\"", "the recording: expected an object, found a string"},
    {R"({"DeviceAccessories": {}})", "DeviceAccessories: expected an array, found an object"},
    {R"({"DeviceAccessories": [{}, 7]})",
     "DeviceAccessories[1]: expected an object, found a number"},
    {R"({"DeviceAccessories": [null]})", "DeviceAccessories[0]: expected an object, found null"},
    {R"({"DeviceAccessories": [{"name": 7}]})",
     "DeviceAccessories[0].name: expected a string, found a number"},
    {R"({"DeviceAccessories": [{"isInstalled": "yes"}]})",
     "DeviceAccessories[0].isInstalled: expected a boolean, found a string"},
    {R"({"DeviceAccessories": [{"isInstalled": 1}]})",
     "DeviceAccessories[0].isInstalled: expected a boolean, found a number"},
    {R"({"InstalledPensConfiguration": []})",
     "InstalledPensConfiguration: expected an object, found an array"},
    {R"({"InstalledPensConfiguration": {"codeName": true}})",
     "InstalledPensConfiguration.codeName: expected a string, found a boolean"},
    {R"({"InstalledPensConfiguration": {"PPDAttributeValues": "x"}})",
     "InstalledPensConfiguration.PPDAttributeValues: expected an object, found a string"},
    {R"({"InstalledPensConfiguration": {"PPDAttributeValues": {"ZrPenDyes": ["C"]}}})",
     "InstalledPensConfiguration.PPDAttributeValues.ZrPenDyes: expected a string, found an "
     "array"},
    {R"({"LinTable": 7})", "LinTable: expected an object, found a number"},
    {R"({"LinTable": {"timestamp": "7"}})",
     "LinTable.timestamp: expected a number, found a string"},
    {R"({"MaxSupportedResolution": [1200]})",
     "MaxSupportedResolution: expected a number or a string, found an array"},
    {R"({"MaxSupportedResolution": false})",
     "MaxSupportedResolution: expected a number or a string, found a boolean"},
    {R"({"RemainingPagesEstimations": "x"})",
     "RemainingPagesEstimations: expected an array, found a string"},
    {R"({"RemainingPagesEstimations": [{"pageTypeName": 1}]})",
     "RemainingPagesEstimations[0].pageTypeName: expected a string, found a number"},
    {R"({"RemainingPagesEstimations": [{"minPageCount": "1"}]})",
     "RemainingPagesEstimations[0].minPageCount: expected a number, found a string"},
    {R"({"RemainingPagesEstimations": [{"maxPageCount": true}]})",
     "RemainingPagesEstimations[0].maxPageCount: expected a number, found a boolean"},
    {R"({"RemainingPagesEstimations": [{"state": {}}]})",
     "RemainingPagesEstimations[0].state: expected a number, found an object"},
    {R"({"CustomMediaTypes": [{}, {}, {"ICCProfile": {"URL": 7}}]})",
     "CustomMediaTypes[2].ICCProfile.URL: expected a string, found a number"},
    {R"({"CustomMediaTypes": [{"mediaID": 1201}]})",
     "CustomMediaTypes[0].mediaID: expected a string, found a number"},
    {R"({"CustomMediaTypes": [{"ICCProfile": "file:///p"}]})",
     "CustomMediaTypes[0].ICCProfile: expected an object, found a string"},
};

TEST(RecordedDeviceStatus, NamesThePlaceOfAValueOfAnotherType) {
    for (const auto& [JSON, expected] : kWrongTypes) {
        EXPECT_EQ(errorFor(JSON), expected);
    }
}

TEST(RecordedDeviceStatus, RefusesAProfileNumberThatIsNegativeOrNotWhole) {
    for (const char* number : {"-1", "0.5", "1e30", "18446744073709551616"}) {
        EXPECT_EQ(errorFor(std::string(R"({"CustomMediaTypes": [{"ICCProfile": {"profileID": )") +
                           number + "}}]}"),
                  "CustomMediaTypes[0].ICCProfile.profileID: expected a non-negative whole number, "
                  "found another number");
    }
    EXPECT_EQ(errorFor(R"({"CustomMediaTypes": [{"ICCProfile": {"profileID": "7"}}]})"),
              "CustomMediaTypes[0].ICCProfile.profileID: expected a non-negative whole number, "
              "found a string");
}

TEST(RecordedDeviceStatus, ShowsOnlyAShortPrintablePieceOfANameInAReason) {
    const auto errorForKeyword = [](const std::string& keyword) {
        return errorFor(R"({"InstalledPensConfiguration": {"PPDAttributeValues": {")" + keyword +
                        "\": 7}}}");
    };
    const std::string outer = "InstalledPensConfiguration.PPDAttributeValues.";
    const std::string tail = ": expected a string, found a number";
    EXPECT_EQ(errorForKeyword(std::string(100'000, 'k')),
              outer + std::string(40, 'k') + "..." + tail);
    EXPECT_EQ(errorForKeyword("a\\nb\\u001b[31m"), outer + "(an unprintable name)" + tail);
}

TEST(RecordedDeviceStatus, SaysWhereTheTextIsNotJSON) {
    EXPECT_THAT(errorFor("{\n\"LinTable\": }"),
                testing::StartsWith("is not JSON at line 2, column 13: unexpected '}'"));
}

/// A text of the recording that cannot stand in a PPD line, and why it was dropped.
TEST(RecordedDeviceStatus, DropsATextThatCannotStandInAPPDLineAndKeepsTheReason) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"\\n", "U+000A"},     {"\\r", "U+000D"},     {"\\u0000", "U+0000"}, {"\\u001f", "U+001F"},
        {"\\u007f", "U+007F"}, {"\\u0085", "U+0085"}, {"\\u009f", "U+009F"}, {"\\u2028", "U+2028"},
        {"\\u2029", "U+2029"}, {"\\\"", "U+0022"},    {"\\t", "U+0009"}};
    for (const auto& [escape, name] : cases) {
        const auto status = statusFor(R"({"DeviceAccessories": [{"name": "ab)" + escape +
                                      R"(", "isInstalled": true}], "MaxSupportedResolution": 1})");
        const auto* accessories =
            status->statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey);
        EXPECT_THAT(*accessories, ElementsAre(OrbCSDeviceAccessory{std::nullopt, true}));
        EXPECT_TRUE(status->statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey));
        EXPECT_THAT(
            status->droppedValues(),
            ElementsAre("DeviceAccessories[0].name: has the character " + name + " at byte 2"));
    }
}

TEST(RecordedDeviceStatus, KeepsTextsJustOutsideTheForbiddenCharacters) {
    const auto type =
        mediaTypeWith(R"("name": " ~\u00a0\u2027\u202f'*/%", "mediaID": "\ud83d\ude00")");
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), " ~\xC2\xA0\xE2\x80\xA7\xE2\x80\xAF'*/%");
    EXPECT_EQ(type->mediaID(), "\xF0\x9F\x98\x80");
}

TEST(RecordedDeviceStatus, DropsUnsafeTextsWhereverTheyStand) {
    const auto status = statusFor(R"({
        "InstalledPensConfiguration": {"codeName": "\n",
            "PPDAttributeValues": {"ZrPenDyes": "a\"", "Zr\n*cupsFilter2": "x", "ZrPenKept": "y"}},
        "MaxSupportedResolution": "\n",
        "RemainingPagesEstimations": [{"pageTypeName": "\n", "state": 1}],
        "CustomMediaTypes": [{"name": "\n", "mediaID": "\n", "parentMediaID": "\n",
            "ICCProfile": {"URL": "file:///p", "qualifierVer2": "\n", "profileID": 7}}]})");
    EXPECT_EQ(
        *status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey),
        (OrbCSPensConfiguration{std::nullopt, {{"ZrPenKept", "y"}}}));
    EXPECT_FALSE(status->statusValueForKey_error(kTkCSMaxSupportedResolutionKey, nullptr));
    EXPECT_FALSE(status->statusValueForKey_error(kTkCSRemainingPagesEstimationsKey, nullptr));
    EXPECT_THAT(*status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey),
                IsEmpty());
    const std::string lineFeed = ": has the character U+000A at byte 0";
    const std::string noType = lineFeed + ", so its media type is left out";
    EXPECT_THAT(
        status->droppedValues(),
        testing::UnorderedElementsAre(
            "InstalledPensConfiguration.codeName" + lineFeed,
            "InstalledPensConfiguration.PPDAttributeValues.ZrPenDyes: has the character U+0022 at "
            "byte 1",
            "InstalledPensConfiguration.PPDAttributeValues.(an unprintable name): has the "
            "character U+000A at byte 2",
            "MaxSupportedResolution" + lineFeed,
            "RemainingPagesEstimations[0].pageTypeName" + lineFeed +
                ", so the whole list is left out",
            "CustomMediaTypes[0].name" + noType, "CustomMediaTypes[0].mediaID" + noType,
            "CustomMediaTypes[0].parentMediaID" + noType,
            "CustomMediaTypes[0].ICCProfile.qualifierVer2" + lineFeed +
                ", so the profile is left out"));
}

TEST(RecordedDeviceStatus, LeavesAMediaTypeOutWithARefusedText) {
    for (const char* members :
         {R"("name": "Glossy:  (/etc/passwd)(r)file", "mediaID": "1")",
          R"("name": "Foo<0A>*cupsFilter: x", "mediaID": "1")",
          R"("name": "a", "mediaID": "a;ZrICCProfileId2=Auto")",
          R"("name": "a", "mediaID": "a=b;c")", R"("name": "a", "mediaID": " a")",
          R"("name": "a", "mediaID": "1", "parentMediaID": "3;")"}) {
        const auto status = statusFor(
            std::string(R"({"CustomMediaTypes": [{"name": "before"}, {)") + members +
            R"(, "ICCProfile": {"URL": "file:///p", "profileID": 7}}, {"name": "behind"}]})");
        const auto& types =
            *status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
        ASSERT_THAT(types, SizeIs(2)) << members;
        EXPECT_EQ(types[0]->name(), "before");
        EXPECT_EQ(types[1]->name(), "behind");
        ASSERT_THAT(status->droppedValues(), SizeIs(1)) << members;
        EXPECT_THAT(status->droppedValues()[0],
                    testing::AllOf(testing::StartsWith("CustomMediaTypes[1]."),
                                   testing::EndsWith(", so its media type is left out")));
    }
}

TEST(RecordedDeviceStatus, LeavesAProfileOutWithARefusedTextAndKeepsItsMediaType) {
    for (const char* members :
         {R"("URL": "file:///p", "qualifierVer2": "a b", "profileID": 7)",
          R"("URL": "file:///p", "qualifierVer2": "q/x")",
          R"("URL": "file:///p", "qualifierVer2": "123456789012345678901234567890123456789")",
          R"("URL": "file:///a%0A*x", "profileID": 7)", R"("URL": "file:///a%22", "profileID": 7)",
          R"("URL": "file:///a%FF", "profileID": 7)", R"("URL": "file:a%0d", "profileID": 7)",
          R"("URL": "FILE://localhost/%E2%80%A8", "profileID": 7)",
          R"("URL": "file:///p/a:%20(x)%20run.icc", "profileID": 7)",
          R"("URL": "file:a:b/.", "profileID": 7)",
          R"("URL": "file:///p/%3C0A%3E.icc", "profileID": 7)",
          R"("URL": "file:///p/*.icc", "profileID": 7)"}) {
        const auto status =
            statusFor(std::string(R"({"CustomMediaTypes": [{"name": "n", "ICCProfile": {)") +
                      members + "}}]}");
        const auto& types =
            *status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
        ASSERT_THAT(types, SizeIs(1)) << members;
        EXPECT_EQ(types[0]->name(), "n");
        EXPECT_FALSE(types[0]->ICCProfile()) << members;
        ASSERT_THAT(status->droppedValues(), SizeIs(1)) << members;
        EXPECT_THAT(status->droppedValues()[0],
                    testing::AllOf(testing::StartsWith("CustomMediaTypes[0].ICCProfile."),
                                   testing::EndsWith(", so the profile is left out")));
    }
}

TEST(RecordedDeviceStatus, SaysThatItIsThePathOfAURLThatIsRefused) {
    const auto status = statusFor(
        R"({"CustomMediaTypes": [{"ICCProfile": {"URL": "file:///a%0Ab", "profileID": 7}}]})");
    EXPECT_THAT(status->droppedValues(),
                ElementsAre("CustomMediaTypes[0].ICCProfile.URL: its path has the character "
                            "U+000A at byte 2, so the profile is left out"));
}

TEST(RecordedDeviceStatus, AnEmptyQualifierCountsAsNone) {
    EXPECT_FALSE(profileWith(R"("URL": "file:///p", "qualifierVer2": "")"));
    const auto profile = profileWith(R"("URL": "file:///p", "qualifierVer2": "", "profileID": 7)");
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->qualifierVer2(), std::nullopt);
    EXPECT_EQ(profile->profileID(), 7U);
}

TEST(RecordedDeviceStatus, AnEmptyTextIsNoRefusedText) {
    const auto type = mediaTypeWith(R"("name": "", "mediaID": "", "parentMediaID": "")");
    ASSERT_TRUE(type);
    EXPECT_EQ(type->name(), "");
    EXPECT_EQ(type->mediaID(), "");
    EXPECT_EQ(type->parentMediaID(), "");
}

TEST(RecordedDeviceStatus, RefusesInAnUnquotedValueWhatBeginsAKeywordOrAHexadecimalPart) {
    const auto status = statusFor(R"({
        "InstalledPensConfiguration": {"codeName": "Four Pens",
            "PPDAttributeValues": {"ZrPenDyes": "C*", "ZrPenFamilyIDs": "<0A>", "ZrPenKept": ":"}},
        "MaxSupportedResolution": "600*UIConstraints: *Duplex x",
        "RemainingPagesEstimations": [{"pageTypeName": "A", "state": 1},
                                      {"pageTypeName": "B,C", "state": 1}]})");
    EXPECT_EQ(
        *status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey),
        (OrbCSPensConfiguration{std::nullopt, {{"ZrPenKept", ":"}}}));
    EXPECT_FALSE(status->statusValueForKey_error(kTkCSMaxSupportedResolutionKey, nullptr));
    EXPECT_FALSE(status->statusValueForKey_error(kTkCSRemainingPagesEstimationsKey, nullptr));
    EXPECT_THAT(
        status->droppedValues(),
        testing::UnorderedElementsAre(
            "InstalledPensConfiguration.codeName: has the character U+0020 at byte 4",
            "InstalledPensConfiguration.PPDAttributeValues.ZrPenDyes: has the character U+002A at "
            "byte 1",
            "InstalledPensConfiguration.PPDAttributeValues.ZrPenFamilyIDs: has the character "
            "U+003C at byte 0",
            "MaxSupportedResolution: has the character U+002A at byte 3",
            "RemainingPagesEstimations[1].pageTypeName: has the character U+002C at byte 1, so "
            "the whole list is left out"));
}

TEST(RecordedDeviceStatus, KeepsAProfileURLThatNamesNoFileAsItIs) {
    const auto profile = profileWith(R"("URL": "https://host/p%0A", "profileID": 7)");
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->URL(), "https://host/p%0A");
}

TEST(RecordedDeviceStatus, CountsReasonsBeyondAHundredInsteadOfKeepingThem) {
    std::string JSON = R"({"DeviceAccessories": [{"name": "\n"})";
    for (int i = 1; i < 103; ++i) {
        JSON += R"(, {"name": "\n"})";
    }
    const auto reasons = statusFor(JSON + "]}")->droppedValues();
    ASSERT_THAT(reasons, SizeIs(101));
    EXPECT_EQ(reasons[99], "DeviceAccessories[99].name: has the character U+000A at byte 0");
    EXPECT_EQ(reasons[100], "and 3 more texts");
}

}  // namespace
}  // namespace TkPPDUpdating
