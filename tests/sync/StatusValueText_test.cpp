#include "sync/StatusValueText.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "backends/schemes/PlainCustomMediaType.h"
#include "core_interface/TkCSKeys.h"
#include "tests/support/TestDoubles.h"

namespace TkPPDUpdating::Testing {
namespace {

FakeDeviceStatus fullStatus() {
    const auto number = [](int value) {
        return OrbCSNumberOrString(static_cast<std::int64_t>(value));
    };
    FakeDeviceStatus::Values values;
    values.emplace(
        kTkCSDeviceAccessoriesKey,
        OrbCSDeviceAccessories{{"Duplexer", true}, {"Duplexer", false}, {"Tray2", false}});
    values.emplace(kTkCSInstalledPensConfigurationKey,
                   OrbCSPensConfiguration{"SixPens", {{"ZrPenDyes", "C,M"}, {"ZrPenX", "1"}}});
    values.emplace(kTkCSLinTableKey, OrbCSLinTable{number(252532800)});
    values.emplace(kTkCSMaxSupportedResolutionKey, number(1200));
    values.emplace(kTkCSRemainingPagesEstimationsKey,
                   OrbCSRemainingPagesEstimations{{"Text", number(1), number(2), number(0)},
                                                  {std::nullopt, {}, {}, {}}});
    values.emplace(
        kTkCSCustomMediaTypesKey,
        OrbCustomMediaTypes{
            std::make_shared<const PlainCustomMediaType>("Glossy", "1201", "3", nullptr), nullptr});
    values.emplace(kTkCSInstalledOptionsKey,
                   OrbCSInstalledOptions{{"Option1", "Tray500"}, {"Option2", "True"}});
    return FakeDeviceStatus(std::move(values));
}

TEST(StatusValueText, SaysWhatStandsUnderAnEntry) {
    const std::vector<std::pair<std::string, std::string>> table = {
        {"DeviceAccessories.Duplexer", "installed"},
        {"DeviceAccessories.Tray2", "not installed"},
        {"DeviceAccessories.Tray3", "not reported"},
        {"DeviceAccessories", "Duplexer installed, Duplexer not installed, Tray2 not installed"},
        {"InstalledPensConfiguration.codeName", "SixPens"},
        {"InstalledPensConfiguration.ZrPenDyes", "C,M"},
        {"InstalledPensConfiguration.ZrPenFamilyIDs", "not reported"},
        {"InstalledPensConfiguration", "ZrPenDyes C,M, ZrPenX 1"},
        {"LinTable", "calibrated at 252532800"},
        {"MaxSupportedResolution", "1200"},
        {"RemainingPagesEstimations",
         "Text 1 to 2, state 0, not reported not reported to not reported, state not reported"},
        {"CustomMediaTypes", "Glossy (1201), not reported"},
        {"InstalledOptions", "Option1 Tray500, Option2 True"},
        {"InstalledOptions.Option2", "True"},
        {"InstalledOptions.Option3", "not reported"},
        {"Unknown", "not reported"},
        {"", "not reported"},
    };
    const FakeDeviceStatus status = fullStatus();
    for (const auto& [entry, text] : table) {
        EXPECT_EQ(statusValueText(status, entry), text) << entry;
    }
}

TEST(StatusValueText, NothingAndAnEmptyListAreTwoThings) {
    FakeDeviceStatus::Values values;
    values.emplace(kTkCSCustomMediaTypesKey, OrbCustomMediaTypes());
    values.emplace(kTkCSLinTableKey, OrbCSLinTable());
    const FakeDeviceStatus status(std::move(values));
    EXPECT_EQ(statusValueText(status, "CustomMediaTypes"), "none");
    EXPECT_EQ(statusValueText(status, "LinTable"), "calibrated at not reported");
    EXPECT_EQ(statusValueText(status, "DeviceAccessories"), "not reported");
}

TEST(StatusValueText, LongTextsAreCutBetweenCharacters) {
    std::string text;
    for (int count = 0; count < 250; ++count) {
        text += "\xC3\xA9";
    }
    const auto shown = [](const std::string& resolution) {
        FakeDeviceStatus::Values values;
        values.emplace(kTkCSMaxSupportedResolutionKey, OrbCSNumberOrString(resolution));
        return statusValueText(FakeDeviceStatus(std::move(values)), kTkCSMaxSupportedResolutionKey);
    };
    EXPECT_EQ(shown(text), text);
    EXPECT_EQ(shown(text + "x"), text.substr(0, 496) + "...");
}

TEST(StatusValueText, ManyMediaTypesTakeNoMoreThanIsShown) {
    const OrbCustomMediaTypes types(
        100'000, std::make_shared<const PlainCustomMediaType>("Glossy", "1201", "3", nullptr));
    FakeDeviceStatus::Values values;
    values.emplace(kTkCSCustomMediaTypesKey, types);
    EXPECT_EQ(statusValueText(FakeDeviceStatus(std::move(values)), "CustomMediaTypes").size(),
              500U);
}

TEST(StatusEntryWords, AreThoseOfPeopleOrTheNameItself) {
    EXPECT_EQ(statusEntryWords("DeviceAccessories.Duplexer"), "duplexer");
    EXPECT_EQ(statusEntryWords("InstalledPensConfiguration.codeName"), "pens configuration");
    EXPECT_EQ(statusEntryWords("InstalledPensConfiguration.ZrPenDyes"), "ZrPenDyes");
    EXPECT_EQ(statusEntryWords("LinTable"), "calibration");
    EXPECT_EQ(statusEntryWords("Unheard"), "Unheard");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
