// Texts that printers sent, or could, which did harm once: what becomes of them now, as libcups
// reads the PPD. Each comes as a recording, which drops it, and as a status that nobody looked at,
// whose result must not be written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDTextFile.h"
#include "tests/hostile/LibcupsReading.h"
#include "tests/hostile/UpdateUnderTest.h"
#include "tests/samples/SamplePrinters.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::HasSubstr;

PPDText sample(const std::string& name) {
    return PPDTextWithContentsOfFile(PPDPathOf(name));
}

std::shared_ptr<const OrbCustomMediaType> mediaType(std::string name, std::string mediaID,
                                                    std::shared_ptr<const OrbICCProfile> profile) {
    return std::make_shared<const PlainCustomMediaType>(std::move(name), std::move(mediaID), "3",
                                                        std::move(profile));
}

std::shared_ptr<const OrbICCProfile> profile(std::string URL, std::string qualifier) {
    return std::make_shared<const PlainICCProfile>(std::move(URL), std::move(qualifier),
                                                   std::nullopt);
}

std::shared_ptr<const OrbCSDeviceStatus> statusWith(
    std::shared_ptr<const OrbCustomMediaType> type) {
    return std::make_shared<const FakeDeviceStatus>(FakeDeviceStatus::Values{
        {std::string(kTkCSCustomMediaTypesKey), OrbCustomMediaTypes{std::move(type)}}});
}

struct HarmfulType {
    const char* name;
    std::shared_ptr<const OrbCustomMediaType> type;
    /// What the guard says of it when nobody looked at its texts before.
    const char* refusal;
    /// What libcups makes of it when nobody looks behind either.
    const char* finding;
    /// How many media types of a recording are left.
    std::size_t mediaTypesLeft = 0;

    friend void PrintTo(const HarmfulType& harmful, std::ostream* stream) {
        *stream << harmful.name;
    }
};

class PrinterTextsInLibcups : public testing::Test {
  private:
    const SampleWorld world_{"en_US"};
};

class HarmfulTypes : public PrinterTextsInLibcups,
                     public testing::WithParamInterface<HarmfulType> {};

TEST_P(HarmfulTypes, AreDroppedFromARecording) {
    const auto status = statusWith(GetParam().type);
    std::string error;
    const auto recorded =
        RecordedDeviceStatus::statusWithJSON(RecordedDeviceStatus::JSONForStatus(*status), error);
    ASSERT_NE(recorded, nullptr) << error;
    EXPECT_EQ(recorded->droppedValues().size(), 1U);
    UpdateUnderTest inkJet(sample("zr-inkjet"));
    const auto outcome = inkJet.outcomeWith(recorded);
    EXPECT_THAT(outcome.findings, testing::IsEmpty());
    EXPECT_EQ(outcome.refusal, std::nullopt);
    EXPECT_EQ(outcome.mediaTypes, GetParam().mediaTypesLeft);
}

TEST_P(HarmfulTypes, AreRefusedByTheGuardWhenNobodyLooked) {
    UpdateUnderTest inkJet(sample("zr-inkjet"));
    const auto outcome = inkJet.outcomeWith(statusWith(GetParam().type));
    EXPECT_EQ(outcome.refusal.value_or("accepted"), GetParam().refusal);
}

TEST_P(HarmfulTypes, DoHarmWhenNobodyLooksBehindEither) {
    UpdateUnderTest inkJet(sample("zr-inkjet"));
    const auto outcome =
        inkJet.outcomeWith(statusWith(GetParam().type), UpdateUnderTest::Guard::off);
    EXPECT_THAT(outcome.findings, testing::Contains(HasSubstr(GetParam().finding)));
}

const std::string kLongQualifier(39, 'q');

INSTANTIATE_TEST_SUITE_P(
    ByText, HarmfulTypes,
    testing::Values(
        HarmfulType{
            "CodeBehindAColon",
            mediaType("Glossy:  (/etc/passwd)(r)file 99 string readline pop = % ", "1", nullptr),
            "it would get a new line of MediaType custom1", "foreign code"},
        HarmfulType{"ALineFeedInHexadecimalDigits",
                    mediaType("Foo<0A>*cupsFilter; x", "1", nullptr),
                    "a new line of MediaType custom1 would hold a control character",
                    "a control character"},
        HarmfulType{"AProfileInAMediaID", mediaType("Gloss", "a;ZrICCProfileId2=Auto", nullptr),
                    "it would get a new line of ZrChoiceProperties MediaType.custom1",
                    "does not take them back"},
        HarmfulType{"AMediaIDThatCannotBeReadBack",
                    mediaType("Gloss", "a;;b", profile("file:///p.icc", "q1")),
                    "it would get a new line of ZrICCProfileId2 q1", "a further run changes it"},
        HarmfulType{"AQualifierThatIsTooLong",
                    mediaType("Gloss", "1", profile("file:///p.icc", kLongQualifier)),
                    "a new line of a keyword that cannot be shown would have a keyword that is "
                    "none",
                    "libcups does not open it", 1},
        HarmfulType{"CodeInAProfilesFileName",
                    mediaType("Gloss", "1", profile("file:///p/a:%20(x)%20run.icc", "q1")),
                    "it would get a new line of ZrICCProfileId2 q1", "foreign code", 1},
        HarmfulType{"ALineFeedInAProfilesFileName",
                    mediaType("Gloss", "1", profile("file:///p/a%3C0A%3Eb.icc", "q1")),
                    "a new line of ZrICCProfileId2 q1 would hold a control character",
                    "a control character", 1},
        HarmfulType{"ALineInAName", mediaType("Gloss\n*cupsFilter: \"x 0 /bin/sh\"", "1", nullptr),
                    "it would get a new line of MediaType custom1", "new or another: filter"}),
    [](const auto& type) { return type.param.name; });

TEST_F(PrinterTextsInLibcups, AProfileWithTheNameOfADriversIsRefusedByTheGuardAlone) {
    const auto status = statusWith(mediaType("Gloss", "1", profile("file:///p.icc", "Auto")));
    std::string error;
    const auto recorded =
        RecordedDeviceStatus::statusWithJSON(RecordedDeviceStatus::JSONForStatus(*status), error);
    ASSERT_NE(recorded, nullptr) << error;
    EXPECT_THAT(recorded->droppedValues(), testing::IsEmpty()) << "no text tells that it is taken";
    UpdateUnderTest inkJet(sample("zr-inkjet"));
    EXPECT_EQ(inkJet.outcomeWith(recorded).refusal, "ZrICCProfileId2 Auto would be there twice");
}

TEST_F(PrinterTextsInLibcups, AResolutionDoesNotTakeTheNextLineAlong) {
    // The constraint within the value would go with its line, the driver's next, of a PPD that
    // loses its duplex unit.
    const PPDText office = sample("zr-office");
    std::string text = *office;
    const std::string first = "*ZrDeviceCapabilities:";
    text.insert(text.find(first), "*ZrMaxSupportedResolution: 600\n*Next: 1\n");
    UpdateUnderTest printer(makePPDText(text));
    const std::string hostile = "600*UIConstraints: *Duplex x";
    const FakeDeviceStatus::Values values = {
        {std::string(kTkCSDeviceAccessoriesKey), OrbCSDeviceAccessories{{"Duplexer", false}}},
        {std::string(kTkCSMaxSupportedResolutionKey), OrbCSNumberOrString(hostile)}};
    const auto status = std::make_shared<const FakeDeviceStatus>(values);
    EXPECT_EQ(printer.outcomeWith(status).refusal, "it would lose a line of Next");
    std::string error;
    const auto recorded =
        RecordedDeviceStatus::statusWithJSON(RecordedDeviceStatus::JSONForStatus(*status), error);
    ASSERT_NE(recorded, nullptr) << error;
    const auto outcome = printer.outcomeWith(recorded);
    EXPECT_THAT(outcome.findings, testing::IsEmpty());
    EXPECT_EQ(outcome.refusal, std::nullopt);
    EXPECT_THAT(recorded->droppedValues(),
                testing::ElementsAre("MaxSupportedResolution: has the character U+002A at byte 3"));
}

/// The code that libcups has for a choice of the media types.
std::string codeOf(const std::string& lines, const std::string& choice) {
    std::string error;
    const auto facts = libcupsReading(
        "*PPD-Adobe: \"4.3\"\n*OpenUI *MediaType/Media: PickOne\n*DefaultMediaType: a\n" + lines +
            "*CloseUI: *MediaType\n",
        error);
    EXPECT_TRUE(facts) << error;
    const auto found = std::find_if(facts->begin(), facts->end(), [&](const LibcupsFact& fact) {
        return fact.kind == "choice" && fact.optionKeyword == choice;
    });
    return found == facts->end() ? "no such choice" : found->value;
}

TEST_F(PrinterTextsInLibcups, TheJudgeSeesWhatTheSchedulerWouldRun) {
    EXPECT_EQ(codeOf("*MediaType a/A: \"<</A>>\"\n", "a"), "<</A>>");
    EXPECT_THAT(codeOf("*MediaType a/A:  (/etc/passwd) run: \"<</A>>\"\n", "a"),
                testing::StartsWith("/etc/passwd) run"));
    std::string error;
    EXPECT_FALSE(libcupsReading(
        "*PPD-Adobe: \"4.3\"\n*MediaType " + std::string(41, 'a') + "/A: \"\"\n", error));
    EXPECT_THAT(error, HasSubstr("on line 2"));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
