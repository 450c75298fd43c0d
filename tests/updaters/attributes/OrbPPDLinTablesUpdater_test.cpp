#include "updaters/attributes/OrbPPDLinTablesUpdater.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core_interface/TkCSKeys.h"
#include "tests/updaters/attributes/AttributeUpdaterRuns.h"

namespace TkPPDUpdating::Testing {
namespace {

using Number = OrbCSNumberOrString;

std::shared_ptr<const OrbCSDeviceStatus> statusCalibratedAt(std::optional<Number> timestamp) {
    return statusWith(kTkCSLinTableKey, OrbCSLinTable{std::move(timestamp)});
}

const OrbPPDUpdatingValues kDue = {{"BPECalibrationDue", "True"}};
const OrbPPDUpdatingValues kNotDue = {{"BPECalibrationDue", "False"}};

TEST(OrbPPDLinTablesUpdater, NamesOneAttribute) {
    const auto names = OrbPPDLinTablesUpdater().attributeNames();
    EXPECT_EQ(std::vector(names.begin(), names.end()),
              std::vector<std::string_view>{"BPECalibrationDue"});
}

TEST(OrbPPDLinTablesUpdater, CalibrationIsDueWhenTheTimestampIsAWholeZero) {
    using Limits = std::numeric_limits<double>;
    struct {
        std::optional<Number> timestamp;
        bool isDue;
    } const cases[] = {
        {Number(std::int64_t{0}), true},
        {Number(std::int64_t{1}), false},
        {Number(std::int64_t{-1}), false},
        {Number(std::int64_t{252532800}), false},
        {Number(std::numeric_limits<std::int64_t>::max()), false},
        {Number(std::numeric_limits<std::int64_t>::min()), false},
        {Number(std::numeric_limits<std::uint64_t>::max()), false},
        {Number(0.0), true},
        {Number(-0.0), true},
        {Number(0.5), true},     // cut to 0
        {Number(-0.99), true},   // cut to 0
        {Number(1.5), false},    // cut to 1
        {Number(1e300), false},  // limited to the largest integer
        {Number(-1e300), false},
        {Number(Limits::infinity()), false},
        {Number(-Limits::infinity()), false},
        {Number(Limits::quiet_NaN()), true},  // no number counts as 0
        {std::nullopt, true},
    };
    OrbPPDLinTablesUpdater updater;
    for (const auto& [timestamp, isDue] : cases) {
        EXPECT_EQ(valuesFrom(updater, statusCalibratedAt(timestamp)), isDue ? kDue : kNotDue)
            << (timestamp ? timestamp->stringValue() : "no timestamp");
    }
}

TEST(OrbPPDLinTablesUpdater, ATextCountsAsTheNumberThatItBeginsWith) {
    struct {
        const char* timestamp;
        bool isDue;
    } const cases[] = {
        {"", true},
        {"0", true},
        {"never", true},
        {"0x10", true},
        {"1", false},
        {" 7", false},
        {"252532800", false},
        {"2009-01-01", false},
        {"-3", false},
        {"0.9", true},
        {"99999999999999999999999999", false},
    };
    OrbPPDLinTablesUpdater updater;
    for (const auto& [timestamp, isDue] : cases) {
        EXPECT_EQ(valuesFrom(updater, statusCalibratedAt(Number(std::string(timestamp)))),
                  isDue ? kDue : kNotDue)
            << '"' << timestamp << '"';
    }
}

TEST(OrbPPDLinTablesUpdater, AStatusWithoutLinTableMeansCalibrationIsDue) {
    OrbPPDLinTablesUpdater updater;
    EXPECT_EQ(valuesFrom(updater, statusWithoutValues()), kDue);
    EXPECT_EQ(textUpdatedFrom(updater, "*BPECalibrationDue: False\n", statusWithoutValues()),
              "*BPECalibrationDue: True\n");
}

TEST(OrbPPDLinTablesUpdater, AValueOfAnotherTypeCountsAsNoLinTable) {
    OrbPPDLinTablesUpdater updater;
    EXPECT_EQ(valuesFrom(updater, statusWith(kTkCSLinTableKey, Number(std::int64_t{1}))), kDue);
}

TEST(OrbPPDLinTablesUpdater, WithoutStatusThereIsNoValueAndTheLineStays) {
    OrbPPDLinTablesUpdater updater;
    EXPECT_EQ(valuesFrom(updater, nullptr), std::nullopt);
    EXPECT_EQ(textUpdatedFrom(updater, "*BPECalibrationDue: False\n", nullptr),
              "*BPECalibrationDue: False\n");
}

TEST(OrbPPDLinTablesUpdater, WritesTheAnswerInPlaceOfTheOldOne) {
    OrbPPDLinTablesUpdater updater;
    EXPECT_EQ(textUpdatedFrom(updater, "*One: 1\n*BPECalibrationDue: True\n*Two: 2\n",
                              statusCalibratedAt(Number(std::int64_t{1}))),
              "*One: 1\n*BPECalibrationDue: False\n*Two: 2\n");
}

TEST(OrbPPDLinTablesUpdater, TakesTheStatusThatTheContextHolds) {
    const CoreInterfaceScope scope;
    OrbCoreInterface::setCommunicationServices(nullptr);
    OrbDictionary context = OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(
        statusCalibratedAt(Number(std::int64_t{5})), nullptr);
    EXPECT_EQ(OrbPPDLinTablesUpdater().attributesFromDeviceWithURI_context(std::nullopt, &context),
              kNotDue);
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
