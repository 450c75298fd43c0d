// The recorded states of the sample printers: that they can be read, and that they fit the PPDs.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "tests/samples/SamplePrinters.h"
#include "tests/support/StatusValueEquality.h"

namespace TkPPDUpdating::Testing {
namespace {

constexpr std::string_view kStatusKeys[] = {
    kTkCSDeviceAccessoriesKey,      kTkCSInstalledPensConfigurationKey, kTkCSLinTableKey,
    kTkCSMaxSupportedResolutionKey, kTkCSRemainingPagesEstimationsKey,  kTkCSCustomMediaTypesKey};

using Recording = std::pair<std::string, std::string>;

std::vector<Recording> recordings() {
    std::vector<Recording> all;
    for (const auto& [printer, states] : sampleStates()) {
        for (const std::string& state : states) {
            all.emplace_back(printer, state);
        }
    }
    return all;
}

std::shared_ptr<const RecordedDeviceStatus> statusOf(const Recording& recording) {
    std::string error;
    auto status = RecordedDeviceStatus::statusWithJSON(
        textOfFile(recordingPathOf(recording.first, recording.second)), error);
    EXPECT_TRUE(status) << error;
    return status;
}

/// The value under a key, or null when the printer did not report it.
template <typename Value>
const Value* valueOf(const OrbCSDeviceStatus& status, std::string_view key) {
    const OrbCSStatusValue* const value = status.statusValueForKey_error(key, nullptr);
    return value ? std::get_if<Value>(value) : nullptr;
}

class SampleRecording : public ::testing::TestWithParam<Recording> {
  protected:
    const std::shared_ptr<const RecordedDeviceStatus> status_ = statusOf(GetParam());
    const std::shared_ptr<const PPDModelFile> file_ =
        PPDModelFile::fileWithContentsOfFile(PPDPathOf(GetParam().first));
};

TEST_P(SampleRecording, IsReadWithNothingDropped) {
    ASSERT_TRUE(status_);
    EXPECT_TRUE(status_->droppedValues().empty());
}

TEST_P(SampleRecording, ReportsAllAccessoriesOrNoneAsItsNameSays) {
    const auto* const accessories =
        valueOf<OrbCSDeviceAccessories>(*status_, kTkCSDeviceAccessoriesKey);
    const std::string& state = GetParam().second;
    EXPECT_EQ(accessories != nullptr, state != "silent");
    if (state == "all" || state == "none") {
        EXPECT_FALSE(accessories->empty());
        for (const OrbCSDeviceAccessory& accessory : *accessories) {
            EXPECT_EQ(accessory.isInstalled, state == "all") << accessory.name.value_or("");
        }
    }
}

TEST_P(SampleRecording, ReportsNothingWhenItIsSilent) {
    for (const std::string_view key : kStatusKeys) {
        if (GetParam().second == "silent") {
            EXPECT_FALSE(status_->statusValueForKey_error(key, nullptr)) << key;
        }
    }
}

TEST_P(SampleRecording, NamesPensThatThePPDOffersAndGivesAllTheirAttributes) {
    const auto* const pens =
        valueOf<OrbCSPensConfiguration>(*status_, kTkCSInstalledPensConfigurationKey);
    EXPECT_EQ(pens != nullptr, GetParam().first == "zr-inkjet" && GetParam().second != "silent");
    if (!pens) {
        return;
    }
    ASSERT_TRUE(pens->codeName);
    EXPECT_TRUE(file_->optionForName("ZrPenConfig")->choiceForName(*pens->codeName));
    EXPECT_EQ(pens->PPDAttributeValues.size(), 10U);
    for (const auto& [keyword, value] : pens->PPDAttributeValues) {
        EXPECT_EQ(file_->attributesForName(keyword).size(), 1U) << keyword;
        EXPECT_NE(value, "") << keyword;
    }
}

TEST_P(SampleRecording, GivesCustomMediaTypesAParentAmongTheBuiltInOnes) {
    const auto* const types = valueOf<OrbCustomMediaTypes>(*status_, kTkCSCustomMediaTypesKey);
    if (!types) {
        EXPECT_NE(GetParam(), Recording("zr-inkjet", "all"));
        return;
    }
    std::string properties;
    for (const OrbPPDAttribute* const attribute : file_->attributesForName("ZrChoiceProperties")) {
        properties.append(";").append(attribute->value().value_or(""));
    }
    for (const auto& type : *types) {
        EXPECT_TRUE(type->name());
        EXPECT_TRUE(type->mediaID());
        EXPECT_NE(properties.find(
                      ";MediaID=" + std::string(type->parentMediaID().value_or("none")) + ";"),
                  std::string::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleRecording, ::testing::ValuesIn(recordings()),
                         [](const auto& each) {
                             return each.param.first.substr(3) + "_" + each.param.second;
                         });

TEST(SampleRecordings, OfTheFullInkjetHaveMediaTypesOfEachKind) {
    const auto status = statusOf({"zr-inkjet", "all"});
    const auto* const types = valueOf<OrbCustomMediaTypes>(*status, kTkCSCustomMediaTypesKey);
    ASSERT_TRUE(types);
    ASSERT_EQ(types->size(), 3U);
    const auto& [gloss, laid, canvas] = std::tie((*types)[0], (*types)[1], (*types)[2]);
    EXPECT_EQ(gloss->ICCProfile()->qualifierVer2(), "zrgloss");
    EXPECT_EQ(laid->name(), "Büttenpapier");
    EXPECT_FALSE(laid->ICCProfile());
    EXPECT_FALSE(canvas->ICCProfile()->qualifierVer2());
    EXPECT_EQ(canvas->ICCProfile()->profileID(), 41U);
}

TEST(SampleRecordings, OfTheInkjetBeforeAndAfterCalibrationDifferInNothingElse) {
    const auto after = statusOf({"zr-inkjet", "calibrated"});
    const auto before = statusOf({"zr-inkjet", "uncalibrated"});
    for (const std::string_view key : kStatusKeys) {
        const auto* const one = after->statusValueForKey_error(key, nullptr);
        const auto* const other = before->statusValueForKey_error(key, nullptr);
        const bool same = one && other ? answerTheSame(*one, *other) : one == other;
        EXPECT_EQ(same, key != kTkCSLinTableKey) << key;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
