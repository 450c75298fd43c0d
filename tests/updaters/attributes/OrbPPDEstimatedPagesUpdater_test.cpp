#include "updaters/attributes/OrbPPDEstimatedPagesUpdater.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <locale>
#include <vector>

#include "core_interface/TkCSKeys.h"
#include "tests/updaters/attributes/AttributeUpdaterRuns.h"

namespace TkPPDUpdating::Testing {
namespace {

using Number = OrbCSNumberOrString;
using Estimation = OrbCSRemainingPagesEstimation;
using Estimations = OrbCSRemainingPagesEstimations;

// 20:00:00 UTC on 1 January 2009: 2922 days and 20 hours after 1 January 2001.
constexpr double kTwentyHundredOnNewYear2009 = 2922.0 * 86400 + 20 * 3600;

Number number(std::int64_t value) {
    return Number(value);
}

Estimation estimation(std::string pageType, std::int64_t min, std::int64_t max,
                      std::int64_t state) {
    return {std::move(pageType), number(min), number(max), number(state)};
}

Estimations twoPageTypes() {
    return {estimation("A", 150, 300, 0), estimation("B", 40, 90, 1)};
}

std::shared_ptr<const OrbCSDeviceStatus> statusWithEstimations(Estimations estimations) {
    return statusWith(kTkCSRemainingPagesEstimationsKey, std::move(estimations));
}

/// Sets clock and environment for each test, so that none depends on the process's own.
class OrbPPDEstimatedPagesUpdaterTest : public ::testing::Test {
  protected:
    OrbPPDEstimatedPagesUpdaterTest() {
        OrbCoreInterface::setEnvironment(
            std::make_shared<FakeEnvironment>(std::map<std::string, std::string>{}));
        setClock(kTwentyHundredOnNewYear2009);
    }

    static void setClock(double seconds) {
        OrbCoreInterface::setClock(std::make_shared<FakeClock>(seconds));
    }

    static void setUpdateTimeVariable(const std::string& value) {
        OrbCoreInterface::setEnvironment(std::make_shared<FakeEnvironment>(
            std::map<std::string, std::string>{{"ZrEPRLastUpdateTime", value}}));
    }

    OrbPPDUpdatingValues values(Estimations estimations) {
        return valuesFrom(updater, statusWithEstimations(std::move(estimations))).value();
    }

    /// The time of an update at that time of the clock.
    std::string lastUpdateAt(double seconds) {
        setClock(seconds);
        return values(twoPageTypes()).at("ZrEPRLastUpdate");
    }

    const CoreInterfaceScope scope;
    OrbPPDEstimatedPagesUpdater updater;
};

TEST_F(OrbPPDEstimatedPagesUpdaterTest, NamesItsSixAttributesInOrder) {
    const auto names = updater.attributeNames();
    EXPECT_EQ(
        std::vector(names.begin(), names.end()),
        (std::vector<std::string_view>{"ZrEPRInfoSupported", "ZrEPRPageTypes", "ZrEPRMinPageCounts",
                                       "ZrEPRMaxPageCounts", "ZrEPRStates", "ZrEPRLastUpdate"}));
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, ReadsFourAttributesByTheirKeyPaths) {
    EXPECT_EQ(updater.attributeKeyPaths(), (OrbPPDEstimatedPagesUpdater::AttributeKeyPaths{
                                               {"ZrEPRPageTypes", "pageTypeName"},
                                               {"ZrEPRMinPageCounts", "minPageCount.stringValue"},
                                               {"ZrEPRMaxPageCounts", "maxPageCount.stringValue"},
                                               {"ZrEPRStates", "state.stringValue"}}));
}

// Values

TEST_F(OrbPPDEstimatedPagesUpdaterTest, JoinsTheRecordsInTheirOrder) {
    EXPECT_EQ(values(twoPageTypes()), (OrbPPDUpdatingValues{{"ZrEPRPageTypes", "A,B"},
                                                            {"ZrEPRMinPageCounts", "150,40"},
                                                            {"ZrEPRMaxPageCounts", "300,90"},
                                                            {"ZrEPRStates", "0,1"},
                                                            {"ZrEPRLastUpdate", "252532800"}}));
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, OneRecordGivesOneElementAndNoComma) {
    EXPECT_EQ(values({estimation("A", 150, 300, 0)}),
              (OrbPPDUpdatingValues{{"ZrEPRPageTypes", "A"},
                                    {"ZrEPRMinPageCounts", "150"},
                                    {"ZrEPRMaxPageCounts", "300"},
                                    {"ZrEPRStates", "0"},
                                    {"ZrEPRLastUpdate", "252532800"}}));
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, WithoutStatusTheValuesAreEmptyAndNotNothing) {
    EXPECT_EQ(valuesFrom(updater, nullptr), OrbPPDUpdatingValues());
    OrbCoreInterface::setCommunicationServices(nullptr);
    OrbDictionary context;
    EXPECT_EQ(updater.PPDUpdatingValuesForPPDFile_deviceURI_context(nullptr, kAnyURI, &context),
              OrbPPDUpdatingValues());
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, WithoutEstimationsTheValuesAreEmptyAndNotNothing) {
    EXPECT_EQ(valuesFrom(updater, statusWithoutValues()), OrbPPDUpdatingValues());
    EXPECT_EQ(values({}), OrbPPDUpdatingValues());
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, AValueOfAnotherTypeCountsAsNoEstimations) {
    EXPECT_EQ(valuesFrom(updater, statusWith(kTkCSRemainingPagesEstimationsKey, number(3))),
              OrbPPDUpdatingValues());
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, WithoutEstimationsEvenTheTimeVariableAddsNoTime) {
    setUpdateTimeVariable("12");
    EXPECT_EQ(values({}), OrbPPDUpdatingValues());
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, AMissingPropertyIsAnEmptyElementSoThatTheListsStayAligned) {
    EXPECT_EQ(values({{"A", number(1), std::nullopt, number(0)},
                      {std::nullopt, number(2), number(20), std::nullopt},
                      {"C", std::nullopt, number(30), number(2)}}),
              (OrbPPDUpdatingValues{{"ZrEPRPageTypes", "A,,C"},
                                    {"ZrEPRMinPageCounts", "1,2,"},
                                    {"ZrEPRMaxPageCounts", ",20,30"},
                                    {"ZrEPRStates", "0,,2"},
                                    {"ZrEPRLastUpdate", "252532800"}}));
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, APropertyThatSeveralRecordsAllLackIsAListOfEmptyElements) {
    const Estimation onlyNamed = {"A", std::nullopt, std::nullopt, std::nullopt};
    EXPECT_EQ(values({onlyNamed, onlyNamed, onlyNamed}),
              (OrbPPDUpdatingValues{{"ZrEPRPageTypes", "A,A,A"},
                                    {"ZrEPRMinPageCounts", ",,"},
                                    {"ZrEPRMaxPageCounts", ",,"},
                                    {"ZrEPRStates", ",,"},
                                    {"ZrEPRLastUpdate", "252532800"}}));
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, APropertyThatTheOnlyRecordLacksGivesNoValue) {
    EXPECT_EQ(values({{"A", std::nullopt, number(3), std::nullopt}}),
              (OrbPPDUpdatingValues{{"ZrEPRPageTypes", "A"},
                                    {"ZrEPRMaxPageCounts", "3"},
                                    {"ZrEPRLastUpdate", "252532800"}}));
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, OneRecordWithoutAnyPropertyGivesNotEvenATime) {
    EXPECT_EQ(values({Estimation{}}), OrbPPDUpdatingValues());
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, SeveralRecordsWithoutAnyPropertyGiveListsOfEmptyElements) {
    EXPECT_EQ(values({Estimation{}, Estimation{}}),
              (OrbPPDUpdatingValues{{"ZrEPRPageTypes", ","},
                                    {"ZrEPRMinPageCounts", ","},
                                    {"ZrEPRMaxPageCounts", ","},
                                    {"ZrEPRStates", ","},
                                    {"ZrEPRLastUpdate", "252532800"}}));
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, OddNumbersAreWrittenInTheirStringForm) {
    using Integers = std::numeric_limits<std::int64_t>;
    using Doubles = std::numeric_limits<double>;
    struct {
        Number count;
        const char* element;
    } const cases[] = {
        {number(-1), "-1"},
        {number(Integers::max()), "9223372036854775807"},
        {number(Integers::min()), "-9223372036854775808"},
        {Number(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615"},
        {Number(1.5), "1.5"},
        {Number(-0.25), "-0.25"},
        {Number(1e300), "1e+300"},
        {Number(Doubles::quiet_NaN()), "nan"},
        {Number(Doubles::infinity()), "inf"},
        {Number(-Doubles::infinity()), "-inf"},
        {Number(std::string("plenty")), "plenty"},
        {Number(std::string("1,2")), "1,2"},
    };
    for (const auto& [count, element] : cases) {
        const auto all = values({{"A", count, count, count}, {"B", count, count, count}});
        const std::string both = std::string(element) + "," + element;
        EXPECT_EQ(all.at("ZrEPRMinPageCounts"), both);
        EXPECT_EQ(all.at("ZrEPRMaxPageCounts"), both);
        EXPECT_EQ(all.at("ZrEPRStates"), both);
    }
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, TheEstimationsOutliveAStatusThatNoContextKeeps) {
    OrbCoreInterface::setCommunicationServices(
        std::make_shared<FakeCommunicationServices>(statusWithEstimations(twoPageTypes())));
    const auto estimations =
        OrbPPDEstimatedPagesUpdater::estimatedPagesFromURI_context(kAnyURI, nullptr);
    OrbCoreInterface::setCommunicationServices(nullptr);
    ASSERT_TRUE(estimations);
    EXPECT_EQ(*estimations, twoPageTypes());
    EXPECT_FALSE(OrbPPDEstimatedPagesUpdater::estimatedPagesFromURI_context(kAnyURI, nullptr));
}

// Time of the update

TEST_F(OrbPPDEstimatedPagesUpdaterTest, TheTimeIsTheClockRoundedHalfToEvenToAWholeNumber) {
    using Limits = std::numeric_limits<double>;
    struct {
        double seconds;
        const char* text;
    } const cases[] = {
        {0, "0"},
        {0.5, "0"},
        {1.5, "2"},
        {2.5, "2"},
        {2.51, "3"},
        {252532800.499, "252532800"},
        {252532800.5, "252532800"},
        {252532801.5, "252532802"},
        {-1, "-1"},
        {-1.5, "-2"},
        {-2.5, "-2"},
        {-0.25, "-0"},
        {-0.0, "-0"},
        {-978307200, "-978307200"},                      // 1970
        {9223372036854775808.0, "9223372036854775808"},  // 2^63
        {-1e22, "-10000000000000000000000"},
        {Limits::denorm_min(), "0"},
        {Limits::infinity(), "inf"},
        {-Limits::infinity(), "-inf"},
        {Limits::quiet_NaN(), "nan"},
        {-Limits::quiet_NaN(), "nan"},
    };
    for (const auto& [seconds, text] : cases) {
        EXPECT_EQ(lastUpdateAt(seconds), text) << seconds;
    }
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, AHugeTimeHasAllItsDigitsAndItsLineIsRefused) {
    // 2^1024 - 2^971, the largest double
    const std::string digits =
        "179769313486231570814527423731704356798070567525844996598917476803157260780028538760"
        "589558632766878171540458953514382464234321326889464182768467546703537516986049910576"
        "551282076245490090389328944075868508455133942304583236903222948165808559332123348274"
        "797826204144723168738177180919299881250404026184124858368";
    EXPECT_EQ(lastUpdateAt(std::numeric_limits<double>::max()), digits);
    EXPECT_EQ(lastUpdateAt(std::numeric_limits<double>::lowest()), "-" + digits);
    EXPECT_EQ(textUpdatedFrom(updater, "*ZrEPRLastUpdate: 1\n*ZrEPRStates: 9\n",
                              statusWithEstimations({{{}, {}, {}, number(4)}})),
              "*ZrEPRStates: 4\n");
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, TheTimeDoesNotDependOnTheLocale) {
    class Grouped : public std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        char do_decimal_point() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new Grouped));
    const std::string time = lastUpdateAt(252532800.25);
    std::locale::global(before);
    EXPECT_EQ(time, "252532800");
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, TheTimeVariableIsWrittenUnchanged) {
    for (const std::string value : {"252532800", "", "yesterday, 8 pm", " 1.5 ", "%.0f"}) {
        setUpdateTimeVariable(value);
        EXPECT_EQ(values(twoPageTypes()).at("ZrEPRLastUpdate"), value);
        EXPECT_EQ(textUpdatedFrom(updater, "*ZrEPRLastUpdate: 1\n",
                                  statusWithEstimations({{"A", {}, {}, {}}})),
                  "*ZrEPRLastUpdate: " + value + "\n*ZrEPRPageTypes: A\n");
    }
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, AnotherVariableDoesNotSetTheTime) {
    OrbCoreInterface::setEnvironment(
        std::make_shared<FakeEnvironment>(std::map<std::string, std::string>{
            {"ZREPRLASTUPDATETIME", "1"}, {"ZrEPRLastUpdate", "2"}}));
    EXPECT_EQ(values(twoPageTypes()).at("ZrEPRLastUpdate"), "252532800");
}

// Text

TEST_F(OrbPPDEstimatedPagesUpdaterTest, WritesTheListsInPlaceAndLeavesInfoSupportedAlone) {
    EXPECT_EQ(textUpdatedFrom(updater,
                              "*ZrEPRInfoSupported:  \"Maybe\"\n"
                              "*ZrEPRPageTypes: \"\"\n"
                              "*ZrEPRMinPageCounts: \"\"\n"
                              "*ZrEPRMaxPageCounts: \"\"\n"
                              "*ZrEPRStates: \"\"\n"
                              "*ZrEPRLastUpdate: 0\n"
                              "*One: 1\n",
                              statusWithEstimations(twoPageTypes())),
              "*ZrEPRInfoSupported:  \"Maybe\"\n"
              "*ZrEPRPageTypes: A,B\n"
              "*ZrEPRMinPageCounts: 150,40\n"
              "*ZrEPRMaxPageCounts: 300,90\n"
              "*ZrEPRStates: 0,1\n"
              "*ZrEPRLastUpdate: 252532800\n"
              "*One: 1\n");
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, AppliesThroughInfoSupportedAloneAndAppendsTheLists) {
    const std::string text = ppdOfLines({"*ZrEPRInfoSupported: True"});
    const auto PPDFile = parsedPPD(text);
    ASSERT_TRUE(PPDFile);
    EXPECT_TRUE(updater.isApplicableForPPDFile(PPDFile.get()));
    EXPECT_EQ(textUpdatedFrom(updater, text, statusWithEstimations(twoPageTypes())),
              text +
                  "*ZrEPRPageTypes: A,B\n*ZrEPRMinPageCounts: 150,40\n*ZrEPRMaxPageCounts: 300,90\n"
                  "*ZrEPRStates: 0,1\n*ZrEPRLastUpdate: 252532800\n");
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, WithoutEstimationsNoLineChanges) {
    const std::string text = "*ZrEPRInfoSupported: True\n*ZrEPRStates: 7\n*ZrEPRLastUpdate: 1";
    EXPECT_EQ(textUpdatedFrom(updater, text, nullptr), text);
    EXPECT_EQ(textUpdatedFrom(updater, text, statusWithoutValues()), text);
    EXPECT_EQ(textUpdatedFrom(updater, text, statusWithEstimations({})), text);
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, AThousandPageTypesDropTheListsFromThePPDButNotTheTime) {
    Estimations estimations;
    std::string names;
    for (int i = 0; i < 1000; ++i) {
        names += (i == 0 ? "T" : ",T") + std::to_string(i);
        estimations.push_back(estimation("T" + std::to_string(i), 1, 2, 0));
    }
    const auto all = values(estimations);
    EXPECT_EQ(all.at("ZrEPRPageTypes"), names);
    EXPECT_EQ(all.at("ZrEPRStates").size(), 1999U);
    EXPECT_EQ(textUpdatedFrom(updater,
                              "*ZrEPRPageTypes: A\n*ZrEPRMinPageCounts: 1\n*ZrEPRMaxPageCounts: 2\n"
                              "*ZrEPRStates: 0\n*ZrEPRLastUpdate: 1\n*One: 1\n",
                              statusWithEstimations(estimations)),
              "*ZrEPRLastUpdate: 252532800\n*One: 1\n");
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, AListIsWrittenUpTo255BytesOfLineAndRefusedFrom256) {
    const std::size_t room = 255 - std::string("*ZrEPRPageTypes: ").size();
    const std::string old = "*ZrEPRPageTypes: A\n*ZrEPRLastUpdate: 1\n";
    EXPECT_EQ(textUpdatedFrom(updater, old,
                              statusWithEstimations({{std::string(room, 'x'), {}, {}, {}}})),
              "*ZrEPRPageTypes: " + std::string(room, 'x') + "\n*ZrEPRLastUpdate: 252532800\n");
    EXPECT_EQ(textUpdatedFrom(updater, old,
                              statusWithEstimations({{std::string(room + 1, 'x'), {}, {}, {}}})),
              "*ZrEPRLastUpdate: 252532800\n");
}

TEST_F(OrbPPDEstimatedPagesUpdaterTest, CopiesInfoSupportedFromAnotherPPD) {
    const auto source =
        parsedPPD(ppdOfLines({"*ZrEPRInfoSupported: True", "*ZrEPRLastUpdate: \"77\""}));
    ASSERT_TRUE(source);
    EXPECT_EQ(
        *updater.updatedPPDContentsForContents_PPDFile_context(
            makePPDText("*ZrEPRInfoSupported: False\n*ZrEPRStates: 1\n"), source.get(), nullptr),
        "*ZrEPRInfoSupported: True\n*ZrEPRStates: 1\n*ZrEPRLastUpdate: 77\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
