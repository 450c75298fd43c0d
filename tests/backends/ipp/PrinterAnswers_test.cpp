// Whole answers of printers, each with the status that is true for it: tests/backends/ipp/answers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "backends/ipp/IPPAnswerFilter.h"
#include "backends/ipp/IPPStatusMapping.h"
#include "backends/libcups/IPPMessage.h"
#include "core_interface/TkCSKeys.h"
#include "tests/backends/ipp/IPPAnswerFile.h"
#include "tests/support/FileContents.h"

namespace TkPPDUpdating::Testing {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> answerNames() {
    std::vector<std::string> names;
    for (const auto& entry :
         fs::directory_iterator(TKPPDUPDATING_SOURCE_DIR "/tests/backends/ipp/answers")) {
        names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

IPPAnswerFile fileNamed(const std::string& name) {
    return IPPAnswerFile::fileWithText(
        contentsOfFile(TKPPDUPDATING_SOURCE_DIR "/tests/backends/ipp/answers/" + name + ".txt"));
}

/// As the request makes it of the bytes that it gets.
std::shared_ptr<const ReportedDeviceStatus> statusOf(const std::string& bytes) {
    const auto names = IPPStatusMapping::requestedAttributes();
    DroppedValues dropped(IPPStatusMapping::meaningOfDrop);
    std::string error;
    auto filtered =
        IPPAnswerFilter({names.begin(), names.end()}, 10'000).filtered(bytes, dropped, error);
    const IPPMessage message = IPPMessageWithBytes(filtered.bytes);
    return message ? IPPStatusMapping::statusForAnswer(
                         IPPAnswer(message.get(), std::move(dropped), std::move(filtered.syntaxes)))
                   : nullptr;
}

std::string accessoryText(const ReportedDeviceStatus& status, std::string_view name) {
    if (const auto* accessories =
            status.statusValueForKey<OrbCSDeviceAccessories>(kTkCSDeviceAccessoriesKey)) {
        for (const OrbCSDeviceAccessory& accessory : *accessories) {
            if (accessory.name == name) {
                return accessory.isInstalled ? "installed" : "not installed";
            }
        }
    }
    return "not reported";
}

std::string pensText(const ReportedDeviceStatus& status, std::string_view keyword) {
    const auto* pens =
        status.statusValueForKey<OrbCSPensConfiguration>(kTkCSInstalledPensConfigurationKey);
    if (!pens || !pens->PPDAttributeValues.contains(keyword)) {
        return "not reported";
    }
    return pens->PPDAttributeValues.find(keyword)->second;
}

std::string resolutionText(const ReportedDeviceStatus& status) {
    const auto* value =
        status.statusValueForKey<OrbCSNumberOrString>(kTkCSMaxSupportedResolutionKey);
    return value ? value->stringValue() : "not reported";
}

class PrinterAnswers : public testing::TestWithParam<std::string> {};

TEST_P(PrinterAnswers, GiveTheTrueStatus) {
    IPPAnswerFile file = fileNamed(GetParam());
    const auto status = statusOf(file.bytes);
    ASSERT_NE(status, nullptr);
    EXPECT_EQ(accessoryText(*status, "Duplexer"), file.status["Duplexer"]);
    EXPECT_EQ(accessoryText(*status, "Tray2"), file.status["Tray2"]);
    EXPECT_EQ(pensText(*status, kTkCSPPDPenDyesKey), file.status["ZrPenDyes"]);
    EXPECT_EQ(pensText(*status, kTkCSPPDPenInkSufficientKey), file.status["ZrPenInkSufficient"]);
    EXPECT_EQ(resolutionText(*status), file.status["MaxSupportedResolution"]);
    const auto* types = status->statusValueForKey<OrbCustomMediaTypes>(kTkCSCustomMediaTypesKey);
    EXPECT_EQ(!types           ? "not reported"
              : types->empty() ? "none"
                               : "",
              file.status["CustomMediaTypes"]);
    std::vector<std::string> texts;
    for (const auto& type : types ? *types : OrbCustomMediaTypes()) {
        texts.push_back(std::string(type->name().value_or("nothing")) + " = " +
                        std::string(type->mediaID().value_or("nothing")));
    }
    EXPECT_EQ(texts, file.lists["CustomMediaTypes"]);
    EXPECT_THAT(status->droppedValues(),
                testing::UnorderedElementsAreArray(file.lists["warnings"]));
}

INSTANTIATE_TEST_SUITE_P(Of, PrinterAnswers, testing::ValuesIn(answerNames()),
                         [](const auto& name) {
                             std::string text = name.param;
                             std::replace(text.begin(), text.end(), '-', '_');
                             return text;
                         });

TEST(PrinterAnswersFolder, HasAHundredAnswersThatSayEverything) {
    const auto names = answerNames();
    EXPECT_GE(names.size(), 100U);
    for (const std::string& name : names) {
        const IPPAnswerFile file = fileNamed(name);
        for (const char* value : {"Duplexer", "Tray2", "ZrPenDyes", "ZrPenInkSufficient",
                                  "MaxSupportedResolution", "CustomMediaTypes"}) {
            EXPECT_TRUE(file.status.contains(value)) << name << ": " << value;
        }
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
