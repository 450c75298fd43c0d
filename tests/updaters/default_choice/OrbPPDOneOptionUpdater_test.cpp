#include "updaters/default_choice/OrbPPDOneOptionUpdater.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;

class StaplerUpdater : public OrbPPDOneOptionUpdater {
  public:
    StaplerUpdater() : OrbPPDOneOptionUpdater("Stapler", "DeviceAccessories.Stapler") {}
};

class ResolutionUpdater : public OrbPPDOneOptionUpdater {
  public:
    ResolutionUpdater() : OrbPPDOneOptionUpdater("Finest", "MaxSupportedResolution") {}
};

/// One that says itself what a value means.
class PensUpdater : public OrbPPDOneOptionUpdater {
  public:
    PensUpdater() : OrbPPDOneOptionUpdater("Pens", "InstalledPensConfiguration.ZrPenDyes") {}
    std::optional<std::string> PPDChoiceTextForStatusValue(const StatusValue& value) override {
        const auto* const* reported = std::get_if<const OrbCSStatusValue*>(&value);
        const auto& pens = std::get<OrbCSPensConfiguration>(**reported);
        return pens.PPDAttributeValues.size() == 1 ? "One" : "Many";
    }
};

/// A value whose meaning nobody said.
class CalibrationUpdater : public OrbPPDOneOptionUpdater {
  public:
    CalibrationUpdater() : OrbPPDOneOptionUpdater("Calibrated", "LinTable") {}
};

/// One that reads what the test says.
class AnyUpdater : public OrbPPDOneOptionUpdater {
  public:
    explicit AnyUpdater(std::string_view statusEntry)
        : OrbPPDOneOptionUpdater("Any", statusEntry) {}
};

OrbDictionary contextWith(std::string_view key, OrbCSStatusValue value) {
    FakeDeviceStatus::Values values;
    values.emplace(key, std::move(value));
    return OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::make_shared<FakeDeviceStatus>(std::move(values)), nullptr);
}

std::optional<std::string> defaultOf(OrbPPDOneOptionUpdater& updater, OrbDictionary context) {
    const auto choices = updater.defaultChoicesFromDeviceWithURI_context(std::nullopt, &context);
    return choices && !choices->empty() ? std::optional(choices->begin()->second) : std::nullopt;
}

TEST(OrbPPDOneOptionUpdater, SetsTheOptionToWhetherTheAccessoryIsInstalled) {
    StaplerUpdater updater;
    EXPECT_THAT(updater.optionNames(), ElementsAre("Stapler"));
    EXPECT_THAT(updater.statusEntriesRead(), ElementsAre("DeviceAccessories.Stapler"));
    EXPECT_EQ(defaultOf(updater, contextWithAccessories({{"Stapler", true}})), "True");
    EXPECT_EQ(defaultOf(updater, contextWithAccessories({{"Punch", true}, {"Stapler", false}})),
              "False");
    EXPECT_EQ(defaultOf(updater, contextWithAccessories({{"Punch", true}})), std::nullopt);
    EXPECT_EQ(defaultOf(updater, contextWithSilentDevice()), std::nullopt);
}

TEST(OrbPPDOneOptionUpdater, TakesAnEntryWithoutAPartForTheWholeValue) {
    for (const char* entry : {"DeviceAccessories", "DeviceAccessories."}) {
        AnyUpdater updater(entry);
        EXPECT_EQ(updater.statusKeyForOptionWithName("Any"), "DeviceAccessories") << entry;
        EXPECT_EQ(updater.accessoryNameForOptionWithName("Any"), std::nullopt) << entry;
    }
}

TEST(OrbPPDOneOptionUpdater, SetsTheOptionToTheTextOfANumberOrText) {
    ResolutionUpdater updater;
    EXPECT_EQ(defaultOf(updater,
                        contextWith(kTkCSMaxSupportedResolutionKey, OrbCSNumberOrString(1200.0))),
              "1200");
    EXPECT_EQ(defaultOf(updater, contextWith(kTkCSMaxSupportedResolutionKey,
                                             OrbCSNumberOrString(std::string("600x300dpi")))),
              "600x300dpi");
    EXPECT_THAT(updater.statusEntriesRead(), ElementsAre("MaxSupportedResolution"));
}

TEST(OrbPPDOneOptionUpdater, LeavesTheMeaningOfOtherValuesToItsSubclass) {
    PensUpdater pens;
    EXPECT_THAT(pens.statusEntriesRead(), ElementsAre("InstalledPensConfiguration.ZrPenDyes"));
    EXPECT_EQ(defaultOf(pens, contextWith(kTkCSInstalledPensConfigurationKey,
                                          OrbCSPensConfiguration{{}, {{"ZrPenDyes", "K"}}})),
              "One");
    CalibrationUpdater calibration;
    EXPECT_EQ(defaultOf(calibration, contextWith(kTkCSLinTableKey, OrbCSLinTable{})), std::nullopt);
}

TEST(OrbPPDOneOptionUpdater, TakesWhetherSomethingIsInstalledForAnAccessoryWhateverItsEntry) {
    for (const char* entry : {"DeviceAccessories.Stapler", "MaxSupportedResolution"}) {
        AnyUpdater updater(entry);
        EXPECT_EQ(updater.PPDChoiceTextForStatusValue(true), "True") << entry;
        EXPECT_EQ(updater.PPDChoiceTextForStatusValue(false), "False") << entry;
    }
}

TEST(OrbPPDOneOptionUpdater, ChangesTheTextWhereItHasTheOptionAndTheChoice) {
    StaplerUpdater updater;
    const std::string before =
        "*PPD-Adobe: \"4.3\"\n*OpenUI *Stapler/Stapler: Boolean\n*DefaultStapler: False\n"
        "*Stapler True/In: \"\"\n*Stapler False/Out: \"\"\n*CloseUI: *Stapler\n";
    EXPECT_TRUE(updater.isApplicableForPPDFile(parsedPPD(before).get()));
    EXPECT_FALSE(updater.isApplicableForPPDFile(parsedPPD("*PPD-Adobe: \"4.3\"\n").get()));
    OrbDictionary context = contextWithAccessories({{"Stapler", true}});
    std::string after = before;
    after.replace(after.find("False"), 5, "True");
    EXPECT_EQ(textOf(updater.updatedPPDContentsForContents_deviceURI_context(
                  makePPDText(before), std::nullopt, &context)),
              after);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
