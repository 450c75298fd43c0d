#include "sync/OptionsOfAccessories.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/schemes/ReportedDeviceStatus.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/ParsedPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

/// An installable option of that text, with lines of its choices.
std::string PPDWithOption(const std::string& text, const std::string& choices,
                          const std::string& group = "InstallableOptions") {
    return "*OpenGroup: " + group + "/Installable Options\n*OpenUI *OptionX/" + text +
           ": Boolean\n*DefaultOptionX: No\n" + choices +
           "*CloseUI: *OptionX\n*CloseGroup: " + group + "\n";
}

constexpr const char* kYesAndNo = "*OptionX No/Not Installed: \"\"\n*OptionX Yes/Installed: \"\"\n";

std::shared_ptr<const ReportedDeviceStatus> duplexer(
    bool isInstalled, std::optional<OrbCSToldEntries> told = std::nullopt) {
    ReportedDeviceStatus::Values values;
    values.emplace(kTkCSDeviceAccessoriesKey,
                   OrbCSDeviceAccessories{{"Tray2", true}, {"Duplexer", isInstalled}});
    return std::make_shared<const ReportedDeviceStatus>(
        std::move(values), std::vector<std::string>(), std::move(told));
}

/// What the option gets: "-" for an option that follows nothing.
std::string choiceWith(const std::string& PPD, const OrbCSDeviceStatus& status) {
    const OptionsOfAccessories options(*parsedPPD(PPD));
    if (options.areNone()) {
        return "-";
    }
    const auto answers = options.answersOfStatus(status);
    return answers.size() == 1 ? answers.front().after : std::to_string(answers.size());
}

TEST(OptionsOfAccessories, TheDuplexUnitIsAsTheDuplexer) {
    for (const char* text : {"Duplex Unit", "Duplex Module"}) {
        const std::string PPD = PPDWithOption(text, kYesAndNo);
        EXPECT_EQ(choiceWith(PPD, *duplexer(true)), "Yes") << text;
        EXPECT_EQ(choiceWith(PPD, *duplexer(false)), "No") << text;
    }
    const auto answers = OptionsOfAccessories(*parsedPPD(PPDWithOption("Duplex Unit", kYesAndNo)))
                             .answersOfStatus(*duplexer(true));
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers.front().words, "Duplex Unit: as its duplexer: Not Installed -> Installed");
    EXPECT_EQ(answers.front().way, "duplexer");
}

TEST(OptionsOfAccessories, WhatIsNotCertainFollowsNothing) {
    for (const std::string& PPD :
         {PPDWithOption("Duplex", kYesAndNo), PPDWithOption("Duplex Unit 2", kYesAndNo),
          PPDWithOption("duplex unit", kYesAndNo),
          PPDWithOption("Duplex Unit", kYesAndNo, "General"),
          PPDWithOption("Duplex Unit", "*OptionX No/Off: \"\"\n*OptionX Yes/On: \"\"\n"),
          PPDWithOption("Duplex Unit", std::string(kYesAndNo) + "*OptionX Big/Large: \"\"\n"),
          PPDWithOption("Duplex Unit", "*OptionX Yes/Installed: \"\"\n"),
          PPDWithOption("Duplex Unit",
                        "*OptionX Yes/Installed: \"\"\n*OptionX No/Installed: \"\"\n")}) {
        EXPECT_EQ(choiceWith(PPD, *duplexer(true)), "-") << PPD;
    }
}

TEST(OptionsOfAccessories, StayWhenTheDuplexerIsNotTold) {
    const std::string PPD = PPDWithOption("Duplex Unit", kYesAndNo);
    EXPECT_EQ(choiceWith(PPD, ReportedDeviceStatus({})), "0");
    EXPECT_EQ(choiceWith(PPD, *duplexer(true, OrbCSToldEntries{"DeviceAccessories.Tray2"})), "0");
    EXPECT_EQ(choiceWith(PPD, *duplexer(false, OrbCSToldEntries{"DeviceAccessories.Duplexer"})),
              "No");
    ReportedDeviceStatus::Values others;
    others.emplace(kTkCSDeviceAccessoriesKey,
                   OrbCSDeviceAccessories{{"Tray2", true}, {std::nullopt, true}});
    EXPECT_EQ(choiceWith(PPD, ReportedDeviceStatus(others)), "0");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
