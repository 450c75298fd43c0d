#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/PlainCustomMediaType.h"
#include "backends/schemes/PlainICCProfile.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDTextSafety.h"
#include "tests/support/CodeBlocks.h"
#include "tests/support/StatusValueEquality.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating {
namespace {

using Values = RecordedDeviceStatus::Values;
using Testing::answerTheSame;
using Testing::FakeDeviceStatus;

/// Makes statuses of all forms; the same ones in every run.
class RandomStatus {
  public:
    explicit RandomStatus(unsigned seed) : generator_(seed) {}

    Values values() {
        Values values;
        add(values, kTkCSDeviceAccessoriesKey, [this] {
            return listOf([this] {
                return OrbCSDeviceAccessory{maybeText(PrinterText::plain), chance()};
            });
        });
        add(values, kTkCSInstalledPensConfigurationKey, [this] { return pens(); });
        add(values, kTkCSLinTableKey, [this] { return OrbCSLinTable{maybeNumber()}; });
        add(values, kTkCSMaxSupportedResolutionKey, [this] {
            return chance() ? OrbCSNumberOrString(text(PrinterText::unquotedValue)) : number();
        });
        add(values, kTkCSRemainingPagesEstimationsKey, [this] {
            return listOf([this] {
                return OrbCSRemainingPagesEstimation{maybeText(PrinterText::pageTypeName),
                                                     maybeNumber(), maybeNumber(), maybeNumber()};
            });
        });
        add(values, kTkCSCustomMediaTypesKey,
            [this] { return listOf([this] { return mediaType(); }); });
        add(values, kTkCSInstalledOptionsKey, [this] { return installedOptions(); });
        return values;
    }

  private:
    template <typename Make>
    std::vector<std::invoke_result_t<Make>> listOf(const Make& make) {
        std::vector<std::invoke_result_t<Make>> list;
        for (unsigned i = below(4); i > 0; --i) {
            list.push_back(make());
        }
        return list;
    }

    unsigned below(unsigned bound) { return static_cast<unsigned>(generator_() % bound); }
    bool chance() { return below(2) == 0; }

    OrbCSInstalledOptions installedOptions() {
        OrbCSInstalledOptions options;
        for (unsigned i = below(4); i > 0; --i) {
            const std::string option = text(PrinterText::pensCodeName);
            if (!option.empty()) {
                options.emplace(option, text(PrinterText::pensCodeName));
            }
        }
        return options;
    }

    /// A text of a status; one that would be refused is no part of any.
    std::string text(PrinterText kind) {
        static constexpr std::array<const char*, 12> kPieces{
            "a",     "Z9", " ",   "/", "\\", "*:%", "<C3A9>", "\xC3\xA9", "\xF0\x9F\x98\x80",
            "{[,]}", ":",  "_+-."};
        std::string text;
        do {
            text.clear();
            for (unsigned i = below(6); i > 0; --i) {
                text += kPieces[below(kPieces.size())];
            }
        } while (reasonPrinterTextIsRefused(kind, text));
        return text;
    }

    std::optional<std::string> maybeText(PrinterText kind) {
        return chance() ? std::optional(text(kind)) : std::nullopt;
    }

    /// In the form that reading gives: a whole number is an integer where one can hold it.
    OrbCSNumberOrString number() {
        static constexpr std::array<double, 8> kReals{0.5,  -0.1,    1e-7,    1e300,
                                                      1e21, -2.5e-9, 1.0 / 3, 5e-324};
        static constexpr std::array<std::int64_t, 6> kWhole{0, 7, -7, 1200, INT64_MAX, INT64_MIN};
        switch (below(3)) {
            case 0:
                return OrbCSNumberOrString(kReals[below(kReals.size())]);
            case 1:
                return OrbCSNumberOrString(UINT64_MAX - below(3));
            default:
                return OrbCSNumberOrString(kWhole[below(kWhole.size())]);
        }
    }

    std::optional<OrbCSNumberOrString> maybeNumber() {
        return chance() ? std::optional(number()) : std::nullopt;
    }

    OrbCSPensConfiguration pens() {
        OrbCSPensConfiguration pens{maybeText(PrinterText::pensCodeName), {}};
        for (unsigned i = below(4); i > 0; --i) {
            pens.PPDAttributeValues[text(PrinterText::plain)] = text(PrinterText::unquotedValue);
        }
        return pens;
    }

    std::shared_ptr<const OrbCustomMediaType> mediaType() {
        std::shared_ptr<const OrbICCProfile> profile;
        if (chance()) {
            const bool hasID = chance();
            profile = std::make_shared<const PlainICCProfile>(
                "file:///" + std::to_string(below(9)) + "%20.icc",
                hasID && chance() ? std::nullopt
                                  : std::optional("q" + text(PrinterText::profileQualifier)),
                hasID ? std::optional<std::uint64_t>(UINT64_MAX - below(2)) : std::nullopt);
        }
        return std::make_shared<const PlainCustomMediaType>(
            maybeText(PrinterText::mediaTypeName), maybeText(PrinterText::mediaID),
            maybeText(PrinterText::mediaID), profile);
    }

    template <typename Make>
    void add(Values& values, std::string_view key, const Make& make) {
        if (chance()) {
            values.emplace(key, make());
        }
    }

    std::mt19937 generator_;
};

std::shared_ptr<const RecordedDeviceStatus> readBack(const std::string& JSON) {
    std::string error;
    auto status = RecordedDeviceStatus::statusWithJSON(JSON, error);
    EXPECT_TRUE(status) << error << " in: " << JSON;
    return status;
}

TEST(RecordingRoundTrip, ReadingBackWhatWasWrittenGivesAnEqualStatus) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        const Values values = RandomStatus(seed).values();
        const std::string JSON = RecordedDeviceStatus::JSONForStatus(FakeDeviceStatus(values));
        const auto status = readBack(JSON);
        ASSERT_TRUE(status);
        EXPECT_TRUE(status->droppedValues().empty()) << JSON;
        EXPECT_TRUE(status->ignoredMembers().empty()) << JSON;
        for (const std::string_view key :
             {kTkCSDeviceAccessoriesKey, kTkCSInstalledPensConfigurationKey, kTkCSLinTableKey,
              kTkCSMaxSupportedResolutionKey, kTkCSRemainingPagesEstimationsKey,
              kTkCSCustomMediaTypesKey}) {
            const auto expected = values.find(key);
            const auto* found = status->statusValueForKey_error(key, nullptr);
            ASSERT_EQ(found != nullptr, expected != values.end()) << key << " in " << JSON;
            EXPECT_TRUE(!found || answerTheSame(*found, expected->second)) << key << " in " << JSON;
        }
        EXPECT_EQ(RecordedDeviceStatus::JSONForStatus(*status), JSON);
    }
}

/// One value of each kind.
constexpr const char* kRecording = R"({
  "DeviceAccessories": [
    {
      "name": "Duplexer",
      "isInstalled": true
    }
  ],
  "InstalledPensConfiguration": {
    "codeName": "FourPens",
    "PPDAttributeValues": {
      "ZrPenDyes": "C"
    }
  },
  "LinTable": {
    "timestamp": 0
  },
  "MaxSupportedResolution": 1200,
  "RemainingPagesEstimations": [
    {
      "pageTypeName": "A",
      "minPageCount": 0.5,
      "state": 2
    }
  ],
  "CustomMediaTypes": [
    {
      "name": "Glossy",
      "mediaID": "1201",
      "parentMediaID": "3",
      "ICCProfile": {
        "URL": "file:///g.icc",
        "qualifierVer2": "q1",
        "profileID": 7
      }
    }
  ]
}
)";

TEST(RecordingRoundTrip, WritesKeysInTheOrderOfTheFormatWithTwoBlanksOfIndentation) {
    const FakeDeviceStatus status(
        Values{{std::string(kTkCSCustomMediaTypesKey),
                OrbCustomMediaTypes{std::make_shared<const PlainCustomMediaType>(
                    "Glossy", "1201", "3",
                    std::make_shared<const PlainICCProfile>("file:///g.icc", "q1", 7))}},
               {std::string(kTkCSDeviceAccessoriesKey), OrbCSDeviceAccessories{{"Duplexer", true}}},
               {std::string(kTkCSInstalledPensConfigurationKey),
                OrbCSPensConfiguration{"FourPens", {{"ZrPenDyes", "C"}}}},
               {std::string(kTkCSLinTableKey), OrbCSLinTable{OrbCSNumberOrString(std::int64_t{0})}},
               {std::string(kTkCSMaxSupportedResolutionKey), OrbCSNumberOrString(1200.0)},
               {std::string(kTkCSRemainingPagesEstimationsKey),
                OrbCSRemainingPagesEstimations{{"A", OrbCSNumberOrString(0.5), std::nullopt,
                                                OrbCSNumberOrString(std::int64_t{2})}}}});
    EXPECT_EQ(RecordedDeviceStatus::JSONForStatus(status), kRecording);
}

TEST(RecordingRoundTrip, WritesASilentPrinterAsAnEmptyObject) {
    EXPECT_EQ(RecordedDeviceStatus::JSONForStatus(FakeDeviceStatus()), "{}\n");
}

TEST(RecordingRoundTrip, WritesAndReadsWhatAStatusToldWhenThatIsNotEverything) {
    const ReportedDeviceStatus some({}, {}, OrbCSToldEntries{"LinTable", "CustomMediaTypes"});
    EXPECT_EQ(RecordedDeviceStatus::JSONForStatus(some),
              "{\n  \"Told\": [\n    \"CustomMediaTypes\",\n    \"LinTable\"\n  ]\n}\n");
    for (const auto& told : {some.toldEntries(), std::optional(OrbCSToldEntries())}) {
        const ReportedDeviceStatus status({}, {}, told);
        const auto again = readBack(RecordedDeviceStatus::JSONForStatus(status));
        ASSERT_TRUE(again);
        EXPECT_EQ(again->toldEntries(), told);
    }
    EXPECT_EQ(RecordedDeviceStatus::JSONForStatus(ReportedDeviceStatus({})), "{}\n");
}

TEST(RecordingRoundTrip, LeavesOutWhatJSONCannotExpress) {
    const FakeDeviceStatus status(
        Values{{std::string(kTkCSLinTableKey),
                OrbCSLinTable{OrbCSNumberOrString(std::numeric_limits<double>::quiet_NaN())}},
               {std::string(kTkCSMaxSupportedResolutionKey),
                OrbCSNumberOrString(std::numeric_limits<double>::infinity())},
               {std::string(kTkCSCustomMediaTypesKey), OrbCustomMediaTypes{nullptr}}});
    EXPECT_EQ(RecordedDeviceStatus::JSONForStatus(status),
              "{\n  \"LinTable\": {},\n  \"CustomMediaTypes\": []\n}\n");
}

TEST(RecordingRoundTrip, WritesATextThatIsNotUTF8WithReplacementCharacters) {
    const FakeDeviceStatus status(Values{
        {std::string(kTkCSMaxSupportedResolutionKey), OrbCSNumberOrString(std::string("a\xFF"))}});
    EXPECT_EQ(RecordedDeviceStatus::JSONForStatus(status),
              "{\n  \"MaxSupportedResolution\": \"a\xEF\xBF\xBD\"\n}\n");
}

// Looking through the earlier ones for each would end by the time limit of a test.
TEST(RecordingRoundTrip, WritesAHundredThousandPenAttributes) {
    OrbCSPensConfiguration pens;
    for (int i = 0; i < 100'000; ++i) {
        pens.PPDAttributeValues.emplace("Zr" + std::to_string(i), "v");
    }
    const std::string JSON = RecordedDeviceStatus::JSONForStatus(
        RecordedDeviceStatus(Values{{std::string(kTkCSInstalledPensConfigurationKey), pens}}));
    std::string error;
    const auto status = RecordedDeviceStatus::statusWithJSON(JSON, error);
    ASSERT_TRUE(status) << error;
    const auto* const read =
        status->statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    ASSERT_TRUE(read);
    EXPECT_TRUE(*read == pens);
}

TEST(RecordingRoundTrip, IgnoresAValueOfATypeThatDoesNotStandUnderItsKey) {
    const FakeDeviceStatus status(
        Values{{std::string(kTkCSLinTableKey), OrbCSNumberOrString(std::int64_t{1})}});
    EXPECT_EQ(RecordedDeviceStatus::JSONForStatus(status), "{}\n");
}

TEST(RecordingRoundTrip, TheExampleInTheManualIsARecordingOfAllMembers) {
    const auto examples =
        Testing::codeBlocksOf(Testing::textOfSource("docs/recorded-status.md"), "json");
    ASSERT_EQ(examples.size(), 1U);
    const auto status = readBack(examples[0]);
    ASSERT_TRUE(status);
    for (const std::string_view key :
         {kTkCSDeviceAccessoriesKey, kTkCSInstalledPensConfigurationKey, kTkCSLinTableKey,
          kTkCSMaxSupportedResolutionKey, kTkCSRemainingPagesEstimationsKey,
          kTkCSCustomMediaTypesKey, kTkCSInstalledOptionsKey}) {
        EXPECT_TRUE(status->statusValueForKey_error(key, nullptr)) << key;
    }
}

}  // namespace
}  // namespace TkPPDUpdating
