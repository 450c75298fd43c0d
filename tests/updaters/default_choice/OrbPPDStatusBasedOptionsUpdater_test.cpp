#include "updaters/default_choice/OrbPPDStatusBasedOptionsUpdater.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/InvalidOperation.h"
#include "tests/updaters/default_choice/DefaultChoiceTestSupport.h"

namespace TkPPDUpdating {
namespace {

using Testing::CoreInterfaceScope;
using Testing::FakeCommunicationServices;
using Testing::FakeDeviceStatus;
using Testing::messageOfInvalidOperation;

/// Where an option of the test's updater is read from.
struct Source {
    std::optional<std::string_view> statusKey;
    std::optional<std::string_view> accessoryName;
};

/// An updater that reads its options from where the test says; a scalar status value is the choice
/// itself, the empty one no choice.
class TestUpdater : public OrbPPDStatusBasedOptionsUpdater {
  public:
    explicit TestUpdater(std::vector<std::pair<std::string, Source>> sources)
        : sources_(std::move(sources)) {}

    std::vector<std::string> optionNames() override {
        std::vector<std::string> names;
        for (const auto& [name, source] : sources_) {
            names.push_back(name);
        }
        return names;
    }
    std::optional<std::string_view> statusKeyForOptionWithName(std::string_view name) override {
        return sourceOf(name).statusKey;
    }
    std::optional<std::string_view> accessoryNameForOptionWithName(std::string_view name) override {
        askedForAccessory.emplace_back(name);
        return sourceOf(name).accessoryName;
    }
    std::optional<std::string> PPDChoiceTextForStatusValue(const StatusValue& value) override {
        if (const bool* isInstalled = std::get_if<bool>(&value)) {
            return *isInstalled ? "Installed" : "Missing";
        }
        const auto* scalar =
            std::get_if<OrbCSNumberOrString>(std::get<const OrbCSStatusValue*>(value));
        const std::string text = scalar ? scalar->stringValue() : "";
        return text.empty() ? std::nullopt : std::optional(text);
    }

    std::vector<std::string> askedForAccessory;

  private:
    const Source& sourceOf(std::string_view name) const {
        for (const auto& each : sources_) {
            if (each.first == name) {
                return each.second;
            }
        }
        throw std::logic_error("asked for an option that is none of the updater's");
    }

    std::vector<std::pair<std::string, Source>> sources_;
};

OrbCSStatusValue scalar(std::string text) {
    return OrbCSNumberOrString(std::move(text));
}

OrbDictionary contextWith(FakeDeviceStatus::Values values) {
    return OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        std::make_shared<FakeDeviceStatus>(std::move(values)), nullptr);
}

std::optional<OrbPPDDefaultChoices> choicesOf(OrbPPDStatusBasedOptionsUpdater& updater,
                                              OrbDictionary context) {
    return updater.defaultChoicesFromDeviceWithURI_context("ipp://p", &context);
}

TEST(OrbPPDStatusBasedOptionsUpdater, RaisesForEachQuestionThatASubclassDoesNotAnswer) {
    OrbPPDStatusBasedOptionsUpdater updater;
    EXPECT_EQ(messageOfInvalidOperation([&] { updater.statusKeyForOptionWithName("A"); }),
              "OrbPPDStatusBasedOptionsUpdater does not implement statusKeyForOptionWithName");
    EXPECT_EQ(messageOfInvalidOperation([&] { updater.accessoryNameForOptionWithName("A"); }),
              "OrbPPDStatusBasedOptionsUpdater does not implement accessoryNameForOptionWithName");
    EXPECT_EQ(messageOfInvalidOperation([&] { updater.PPDChoiceTextForStatusValue(true); }),
              "OrbPPDStatusBasedOptionsUpdater does not implement PPDChoiceTextForStatusValue");
}

TEST(StatusBasedChoices, AreNothingWithoutADeviceStatus) {
    const CoreInterfaceScope scope;
    OrbCoreInterface::setCommunicationServices(
        std::make_shared<FakeCommunicationServices>(nullptr));
    TestUpdater updater({});
    EXPECT_EQ(choicesOf(updater, {}), std::nullopt);
}

TEST(StatusBasedChoices, AskForTheStatusOfTheURIThroughTheContext) {
    const CoreInterfaceScope scope;
    const auto services = std::make_shared<FakeCommunicationServices>(
        std::make_shared<FakeDeviceStatus>(FakeDeviceStatus::Values{{"Key", scalar("C1")}}));
    OrbCoreInterface::setCommunicationServices(services);
    TestUpdater updater({{"A", {"Key", {}}}});
    OrbDictionary context{{"Hint", std::string("slow")}};
    EXPECT_EQ(updater.defaultChoicesFromDeviceWithURI_context("ipp://p", &context),
              (OrbPPDDefaultChoices{{"A", "C1"}}));
    EXPECT_EQ(updater.defaultChoicesFromDeviceWithURI_context("ipp://p", &context),
              (OrbPPDDefaultChoices{{"A", "C1"}}));
    ASSERT_EQ(services->requests.size(), 1U);
    EXPECT_EQ(services->requests[0].deviceURI, "ipp://p");
    ASSERT_TRUE(services->requests[0].parameters.has_value());
    EXPECT_EQ(services->requests[0].parameters->count("Hint"), 1U);
    EXPECT_FALSE(services->requests[0].hadErrorSlot);
}

TEST(StatusBasedChoices, AreEmptyForAnUpdaterWithoutOptions) {
    TestUpdater updater({});
    EXPECT_EQ(choicesOf(updater, contextWith({})), OrbPPDDefaultChoices());
}

TEST(StatusBasedChoices, ComeFromTheValueUnderTheStatusKey) {
    TestUpdater updater({{"A", {"KeyA", {}}}, {"B", {"KeyB", {}}}});
    EXPECT_EQ(choicesOf(updater, contextWith({{"KeyA", scalar("C1")}, {"KeyB", scalar("C2")}})),
              (OrbPPDDefaultChoices{{"A", "C1"}, {"B", "C2"}}));
}

TEST(StatusBasedChoices, AskForNoAccessoryWhereThereIsAStatusKey) {
    TestUpdater updater({{"A", {"Key", "Tray2"}}});
    EXPECT_EQ(choicesOf(updater, contextWith({{"Key", scalar("C1")}})),
              (OrbPPDDefaultChoices{{"A", "C1"}}));
    EXPECT_TRUE(updater.askedForAccessory.empty());
}

TEST(StatusBasedChoices, AreNothingWhenTheStatusKeyYieldsNoValueThoughTheAccessoryIsThere) {
    TestUpdater updater({{"A", {"Key", "Tray2"}}});
    EXPECT_EQ(choicesOf(updater, Testing::contextWithAccessories({{"Tray2", true}})), std::nullopt);
}

TEST(StatusBasedChoices, AreNothingWhenOneOfSeveralKeysYieldsNoValue) {
    TestUpdater updater({{"A", {"KeyA", {}}}, {"B", {"KeyB", {}}}, {"C", {"KeyA", {}}}});
    EXPECT_EQ(choicesOf(updater, contextWith({{"KeyA", scalar("C1")}})), std::nullopt);
}

TEST(StatusBasedChoices, AreNothingForAnOptionWithNeitherKeyNorAccessory) {
    TestUpdater updater({{"A", {"Key", {}}}, {"B", {{}, {}}}});
    EXPECT_EQ(choicesOf(updater, contextWith({{"Key", scalar("C1")}})), std::nullopt);
}

TEST(StatusBasedChoices, LeaveOutAnOptionWithoutAChoiceText) {
    TestUpdater updater({{"A", {"KeyA", {}}}, {"B", {"KeyB", {}}}});
    EXPECT_EQ(choicesOf(updater, contextWith({{"KeyA", scalar("")}, {"KeyB", scalar("C2")}})),
              (OrbPPDDefaultChoices{{"B", "C2"}}));
}

TEST(StatusBasedChoices, AreEmptyWhenNoOptionHasAChoiceText) {
    TestUpdater updater({{"A", {"KeyA", {}}}});
    EXPECT_EQ(choicesOf(updater, contextWith({{"KeyA", scalar("")}})), OrbPPDDefaultChoices());
}

struct Accessories {
    const char* name;
    std::optional<OrbCSDeviceAccessories> list;
    std::optional<OrbPPDDefaultChoices> choices;
};

void PrintTo(const Accessories& each, std::ostream* stream) {
    *stream << each.name;
}

class AccessoryChoices : public testing::TestWithParam<Accessories> {};

TEST_P(AccessoryChoices, AreAsExpected) {
    TestUpdater updater({{"A", {{}, "Tray2"}}});
    FakeDeviceStatus::Values values;
    if (GetParam().list) {
        values.emplace(kTkCSDeviceAccessoriesKey, *GetParam().list);
    }
    EXPECT_EQ(choicesOf(updater, contextWith(values)), GetParam().choices);
}

INSTANTIATE_TEST_SUITE_P(
    FromList, AccessoryChoices,
    testing::ValuesIn(std::vector<Accessories>{
        {"OfAnInstalledAccessory", {{{"Tray2", true}}}, {{{"A", "Installed"}}}},
        {"OfAnAccessoryThatIsNotInstalled", {{{"Tray2", false}}}, {{{"A", "Missing"}}}},
        {"OfAnAccessoryAmongOthers",
         {{{"Duplexer", false}, {"Tray2", true}, {"Tray3", false}}},
         {{{"A", "Installed"}}}},
        {"OfTheFirstOfTwoOfTheName", {{{"Tray2", false}, {"Tray2", true}}}, {{{"A", "Missing"}}}},
        {"OfTheFirstWithANameAtAll",
         {{{std::nullopt, false}, {"Tray2", true}}},
         {{{"A", "Installed"}}}},
        {"AreNothingWithoutAList", std::nullopt, std::nullopt},
        {"AreNothingForAnEmptyList", OrbCSDeviceAccessories(), std::nullopt},
        {"AreNothingWhenNoAccessoryMatches", {{{"Duplexer", true}}}, std::nullopt},
        {"AreNothingWhenTheCaseDiffers", {{{"tray2", true}}}, std::nullopt},
        {"AreNothingWhenOnlyTheBeginningMatches", {{{"Tray22", true}}}, std::nullopt},
        {"AreNothingForAnAccessoryWithoutAName", {{{std::nullopt, true}}}, std::nullopt},
    }),
    [](const auto& parameter) { return std::string(parameter.param.name); });

TEST(StatusBasedChoices, AreNothingWhenOneOfTwoAccessoriesIsMissing) {
    TestUpdater updater({{"A", {{}, "Tray2"}}, {"B", {{}, "Duplexer"}}});
    EXPECT_EQ(choicesOf(updater, Testing::contextWithAccessories({{"Tray2", true}})), std::nullopt);
}

TEST(StatusBasedChoices, MixAccessoriesAndStatusKeys) {
    TestUpdater updater({{"A", {{}, "Tray2"}}, {"B", {"Key", {}}}});
    OrbCSDeviceAccessories accessories{{"Tray2", true}};
    EXPECT_EQ(choicesOf(updater, contextWith({{std::string(kTkCSDeviceAccessoriesKey), accessories},
                                              {"Key", scalar("C1")}})),
              (OrbPPDDefaultChoices{{"A", "Installed"}, {"B", "C1"}}));
}

}  // namespace
}  // namespace TkPPDUpdating
