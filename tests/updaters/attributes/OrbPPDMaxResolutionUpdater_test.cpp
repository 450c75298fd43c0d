#include "updaters/attributes/OrbPPDMaxResolutionUpdater.h"

#include <gtest/gtest.h>

#include <limits>

#include "core_interface/TkCSKeys.h"
#include "tests/updaters/attributes/AttributeUpdaterRuns.h"

namespace TkPPDUpdating::Testing {
namespace {

using Number = OrbCSNumberOrString;

std::shared_ptr<const OrbCSDeviceStatus> statusWithResolution(Number resolution) {
    return statusWith(kTkCSMaxSupportedResolutionKey, std::move(resolution));
}

TEST(OrbPPDMaxResolutionUpdater, NamesOneAttribute) {
    const auto names = OrbPPDMaxResolutionUpdater().attributeNames();
    EXPECT_EQ(std::vector(names.begin(), names.end()),
              std::vector<std::string_view>{"ZrMaxSupportedResolution"});
}

TEST(OrbPPDMaxResolutionUpdater, TheValueIsTheStringFormOfTheResolution) {
    using Limits = std::numeric_limits<double>;
    struct {
        Number resolution;
        const char* value;
    } const cases[] = {
        {Number(std::int64_t{1200}), "1200"},
        {Number(std::string("1200x600")), "1200x600"},
        {Number(std::string()), ""},
        {Number(1200.0), "1200"},
        {Number(0.5), "0.5"},
        {Number(std::int64_t{-300}), "-300"},
        {Number(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615"},
        {Number(1e21), "1e+21"},
        {Number(Limits::quiet_NaN()), "nan"},
        {Number(Limits::infinity()), "inf"},
        {Number(-Limits::infinity()), "-inf"},
    };
    OrbPPDMaxResolutionUpdater updater;
    for (const auto& [resolution, value] : cases) {
        EXPECT_EQ(valuesFrom(updater, statusWithResolution(resolution)),
                  (OrbPPDUpdatingValues{{"ZrMaxSupportedResolution", value}}))
            << value;
    }
}

TEST(OrbPPDMaxResolutionUpdater, WritesTheResolutionUnquotedInPlaceOfTheOldOne) {
    OrbPPDMaxResolutionUpdater updater;
    EXPECT_EQ(textUpdatedFrom(updater, "*One: 1\n*ZrMaxSupportedResolution: \"600\"\n*Two: 2\n",
                              statusWithResolution(Number(std::int64_t{1200}))),
              "*One: 1\n*ZrMaxSupportedResolution: 1200\n*Two: 2\n");
}

TEST(OrbPPDMaxResolutionUpdater, AStatusWithoutResolutionGivesNoValueAndTheLineStays) {
    OrbPPDMaxResolutionUpdater updater;
    EXPECT_EQ(valuesFrom(updater, statusWithoutValues()), std::nullopt);
    EXPECT_EQ(textUpdatedFrom(updater, "*ZrMaxSupportedResolution: 600\n", statusWithoutValues()),
              "*ZrMaxSupportedResolution: 600\n");
}

TEST(OrbPPDMaxResolutionUpdater, AValueOfAnotherTypeCountsAsNoResolution) {
    OrbPPDMaxResolutionUpdater updater;
    EXPECT_EQ(valuesFrom(updater, statusWith(kTkCSMaxSupportedResolutionKey, OrbCSLinTable{})),
              std::nullopt);
}

TEST(OrbPPDMaxResolutionUpdater, WithoutStatusThereIsNoValueAndTheLineStays) {
    OrbPPDMaxResolutionUpdater updater;
    EXPECT_EQ(valuesFrom(updater, nullptr), std::nullopt);
    EXPECT_EQ(textUpdatedFrom(updater, "*ZrMaxSupportedResolution: 600\n", nullptr),
              "*ZrMaxSupportedResolution: 600\n");
}

TEST(OrbPPDMaxResolutionUpdater, AResolutionTextTooLongForALineLosesTheLine) {
    OrbPPDMaxResolutionUpdater updater;
    EXPECT_EQ(textUpdatedFrom(updater, "*ZrMaxSupportedResolution: 600\n*Two: 2\n",
                              statusWithResolution(Number(std::string(300, '9')))),
              "*Two: 2\n");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
