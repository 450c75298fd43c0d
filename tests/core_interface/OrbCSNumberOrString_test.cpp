#include "core_interface/OrbCSNumberOrString.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace TkPPDUpdating {
namespace {

using Integer = std::int64_t;
using Unsigned = std::uint64_t;

constexpr Integer kLargest = std::numeric_limits<Integer>::max();
constexpr Integer kSmallest = std::numeric_limits<Integer>::min();

OrbCSNumberOrString text(std::string value) {
    return OrbCSNumberOrString(std::move(value));
}

struct Scalar {
    const char* name;
    OrbCSNumberOrString value;
    std::string stringValue;
    Integer integerValue;
};

void PrintTo(const Scalar& scalar, std::ostream* stream) {
    *stream << scalar.name;
}

class NumberOrString : public testing::TestWithParam<Scalar> {};

TEST_P(NumberOrString, HasTheExpectedStringValueAndIntegerValue) {
    EXPECT_EQ(GetParam().value.stringValue(), GetParam().stringValue);
    EXPECT_EQ(GetParam().value.integerValue(), GetParam().integerValue);
}

INSTANTIATE_TEST_SUITE_P(
    Integer, NumberOrString,
    testing::ValuesIn(std::vector<Scalar>{
        {"Zero", OrbCSNumberOrString(Integer{0}), "0", 0},
        {"Positive", OrbCSNumberOrString(Integer{1200}), "1200", 1200},
        {"Negative", OrbCSNumberOrString(Integer{-7}), "-7", -7},
        {"Largest", OrbCSNumberOrString(kLargest), "9223372036854775807", kLargest},
        {"Smallest", OrbCSNumberOrString(kSmallest), "-9223372036854775808", kSmallest},
        {"UnsignedSmall", OrbCSNumberOrString(Unsigned{300}), "300", 300},
        {"UnsignedAtTheLimit", OrbCSNumberOrString(Unsigned{9223372036854775807U}),
         "9223372036854775807", kLargest},
        {"UnsignedBeyondTheLimit", OrbCSNumberOrString(Unsigned{9223372036854775808U}),
         "9223372036854775808", kLargest},
        {"UnsignedLargest", OrbCSNumberOrString(std::numeric_limits<Unsigned>::max()),
         "18446744073709551615", kLargest},
    }),
    [](const auto& parameter) { return std::string(parameter.param.name); });

INSTANTIATE_TEST_SUITE_P(
    FloatingPoint, NumberOrString,
    testing::ValuesIn(std::vector<Scalar>{
        {"Zero", OrbCSNumberOrString(0.0), "0", 0},
        {"NegativeZero", OrbCSNumberOrString(-0.0), "0", 0},
        {"Whole", OrbCSNumberOrString(1200.0), "1200", 1200},
        {"Fraction", OrbCSNumberOrString(1.5), "1.5", 1},
        {"NegativeFractionIsCutTowardsZero", OrbCSNumberOrString(-1.75), "-1.75", -1},
        {"BelowOne", OrbCSNumberOrString(-0.5), "-0.5", 0},
        {"ShortestFormThatReadsBack", OrbCSNumberOrString(0.1), "0.1", 0},
        {"ThirdNeedsAllItsDigits", OrbCSNumberOrString(1.0 / 3.0), "0.3333333333333333", 0},
        {"SmallestWithoutExponent", OrbCSNumberOrString(1e-6), "0.000001", 0},
        {"SmallHasAnExponent", OrbCSNumberOrString(2.5e-12), "2.5e-12", 0},
        {"LargeWithoutExponent", OrbCSNumberOrString(1e20), "100000000000000000000", kLargest},
        {"LargestWithExponent", OrbCSNumberOrString(1e21), "1e+21", kLargest},
        {"NegativeLargeIsLimited", OrbCSNumberOrString(-1e21), "-1e+21", kSmallest},
        {"TwoToThe63IsLimited", OrbCSNumberOrString(9223372036854775808.0), "9223372036854776000",
         kLargest},
        {"MinusTwoToThe63Fits", OrbCSNumberOrString(-9223372036854775808.0), "-9223372036854776000",
         kSmallest},
        {"NotANumber", OrbCSNumberOrString(std::numeric_limits<double>::quiet_NaN()), "nan", 0},
        {"Infinity", OrbCSNumberOrString(std::numeric_limits<double>::infinity()), "inf", kLargest},
        {"NegativeInfinity", OrbCSNumberOrString(-std::numeric_limits<double>::infinity()), "-inf",
         kSmallest},
    }),
    [](const auto& parameter) { return std::string(parameter.param.name); });

// The same texts as every ECMAScript implementation gives.
INSTANTIATE_TEST_SUITE_P(
    ShortestDecimalForm, NumberOrString,
    testing::ValuesIn(std::vector<Scalar>{
        {"TenToTheMinus7", OrbCSNumberOrString(1e-7), "1e-7", 0},
        {"NegativeTenToTheMinus7", OrbCSNumberOrString(-1e-7), "-1e-7", 0},
        {"TenToThe21", OrbCSNumberOrString(1e21), "1e+21", kLargest},
        {"ExponentOfTwoDigits", OrbCSNumberOrString(1.5e-10), "1.5e-10", 0},
        {"ZerosForDigitsThatDoNotCount", OrbCSNumberOrString(123456789012345680000.0),
         "123456789012345680000", kLargest},
        {"SmallestPositive", OrbCSNumberOrString(5e-324), "5e-324", 0},
        {"LargestFinite", OrbCSNumberOrString(1.7976931348623157e308), "1.7976931348623157e+308",
         kLargest},
        {"JustBelowTenToThe21", OrbCSNumberOrString(999999999999999900000.0),
         "999999999999999900000", kLargest},
        {"DigitsOnBothSidesOfThePoint", OrbCSNumberOrString(123.456), "123.456", 123},
        {"ZerosBehindThePoint", OrbCSNumberOrString(0.00001234), "0.00001234", 0},
        {"JustBelowTenToTheMinus6", OrbCSNumberOrString(9.5e-7), "9.5e-7", 0},
    }),
    [](const auto& parameter) { return std::string(parameter.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Text, NumberOrString,
    testing::ValuesIn(std::vector<Scalar>{
        {"Empty", text(""), "", 0},
        {"Number", text("600"), "600", 600},
        {"NumberWithUnit", text("600dpi"), "600dpi", 600},
        {"FirstOfTwoNumbers", text("600x1200"), "600x1200", 600},
        {"Fraction", text("1.9"), "1.9", 1},
        {"Negative", text("-12"), "-12", -12},
        {"PlusSign", text("+12"), "+12", 12},
        {"TwoSigns", text("+-12"), "+-12", 0},
        {"SignAlone", text("-"), "-", 0},
        {"WhiteSpaceBefore", text(" \t\n 12"), " \t\n 12", 12},
        {"WhiteSpaceOnly", text("  "), "  ", 0},
        {"SpaceAfterTheSign", text("- 12"), "- 12", 0},
        {"LeadingZeros", text("0012"), "0012", 12},
        {"Hexadecimal", text("0x10"), "0x10", 0},
        {"Word", text("high"), "high", 0},
        {"TooLarge", text("99999999999999999999"), "99999999999999999999", kLargest},
        {"TooSmall", text("-99999999999999999999"), "-99999999999999999999", kSmallest},
        {"NotASCII", text("für"), "für", 0},
    }),
    [](const auto& parameter) { return std::string(parameter.param.name); });

TEST(NumberOrStringKind, TellsTextsFromNumbers) {
    EXPECT_TRUE(text("12").isString());
    EXPECT_FALSE(OrbCSNumberOrString(Integer{12}).isString());
    EXPECT_FALSE(OrbCSNumberOrString(Unsigned{12}).isString());
    EXPECT_FALSE(OrbCSNumberOrString(12.0).isString());
}

TEST(NumberOrStringKind, ComparesValuesOfOneKindOnly) {
    EXPECT_EQ(OrbCSNumberOrString(Integer{12}), OrbCSNumberOrString(Integer{12}));
    EXPECT_NE(OrbCSNumberOrString(Integer{12}), OrbCSNumberOrString(Integer{13}));
    EXPECT_NE(OrbCSNumberOrString(Integer{12}), text("12"));
    EXPECT_EQ(text("12"), text("12"));
}

}  // namespace
}  // namespace TkPPDUpdating
