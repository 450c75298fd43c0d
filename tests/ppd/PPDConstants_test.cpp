#include "ppd/PPDConstants.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace TkPPDUpdating::Testing {
namespace {

TEST(PPDConstants, HaveTheTextsThatCallersUseByName) {
    struct {
        std::string_view constant;
        std::string_view text;
    } const cases[] = {
        {kTkPPDDefaultChoiceNameFormat, "Default%@"},
        {kTkPPDDefaultChoiceFormatPrefix, "\n*Default%@:"},
        {kTkPPDDefaultChoiceFormatString, "*Default%@: %@"},
        {kTkPPDChoiceFormatPrefix, "\n*%@ %@/"},
        {kTkPPDTrueValue, "True"},
        {kTkPPDFalseValue, "False"},
        {kTkPPDUnknownValue, "Unknown"},
        {kTkPPDNewLine, "\n"},
        {kTkPPDQuote, "\""},
        {kTkPPDEnd, "*End"},
        {kTkPPDColon, ":"},
        {kTkPPDAsterisk, "*"},
        {kTkPPDSlash, "/"},
        {kTkPPDSpace, " "},
        {kTkPPDEmptyString, ""},
        {kTkPPDCUPSVersionAttributeName, "cupsVersion"},
        {kTkPPDCUPSLanguagesAttributeName, "cupsLanguages"},
    };
    for (const auto& [constant, text] : cases) {
        EXPECT_EQ(constant, text);
    }
}

TEST(PPDConstants, TheEndOfThePPDIsTheLargestSignedMachineWord) {
    EXPECT_EQ(kTkPPDProcessorPPDEndLocation, static_cast<std::size_t>(INTPTR_MAX));
}

TEST(PPDFormatted, FillsEachPlaceWithTheNextArgument) {
    EXPECT_EQ(PPDFormatted("*%@ %@/%@: %@", {"K", "S", "T", "V"}), "*K S/T: V");
    EXPECT_EQ(PPDFormatted("%@.%@", {"en", "K"}), "en.K");
    EXPECT_EQ(PPDFormatted("%@%@", {"a", "b"}), "ab");
    EXPECT_EQ(PPDFormatted("%@", {""}), "");
    EXPECT_EQ(PPDFormatted("", {"a"}), "");
    EXPECT_EQ(PPDFormatted("no place", {}), "no place");
}

TEST(PPDFormatted, TakesArgumentsAsTheyStand) {
    EXPECT_EQ(PPDFormatted("%@-%@", {"%@", "b"}), "%@-b");
    EXPECT_EQ(PPDFormatted("%@", {"%d %s %%"}), "%d %s %%");
    EXPECT_EQ(PPDFormatted("%@@", {"%"}), "%@");
}

TEST(PPDFormatted, LeavesOutPlacesWithoutArgumentAndArgumentsWithoutPlace) {
    EXPECT_EQ(PPDFormatted("a%@b%@c", {"1"}), "a1bc");
    EXPECT_EQ(PPDFormatted("%@", {}), "");
    EXPECT_EQ(PPDFormatted("a", {"1", "2"}), "a");
}

TEST(PPDFormatted, KeepsPerCentSignsThatAreNoPlace) {
    EXPECT_EQ(PPDFormatted("100% %d %", {"x"}), "100% %d %");
    EXPECT_EQ(PPDFormatted("%%@", {"x"}), "%x");
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
