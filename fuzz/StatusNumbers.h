#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <regex>
#include <string>

#include "core_interface/OrbCSNumberOrString.h"
#include "fuzz/FuzzTarget.h"

/// What a number or a text of a status gives, by the rules of ECMAScript and the C library.
namespace TkPPDUpdating::Fuzzing {

/// ECMA-262, Number::toString, of a finite number that is not 0.
inline void requireECMAScriptForm(const std::string& text, double number) {
    static const std::regex kForm(
        "-?((0|[1-9][0-9]*)(\\.[0-9]*[1-9])?|[1-9](\\.[0-9]*[1-9])?e[+-][1-9][0-9]*)");
    require(std::regex_match(text, kForm), "the form is that of ECMAScript");
    const double size = std::fabs(number);
    const bool isPlain = size >= 1e-6 && size < 1e21;
    require((text.find('e') == std::string::npos) == isPlain, "an exponent where one is needed");
    require(text.starts_with('-') == (number < 0), "a sign where one is needed");
}

/// How many digits of the number are written that are not there for their places alone.
inline std::size_t significantDigitsIn(const std::string& text) {
    std::string digits;
    for (const char character : text.substr(0, text.find('e'))) {
        if (character >= '0' && character <= '9') {
            digits += character;
        }
    }
    const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size());
    return digits.find_last_not_of('0') + 1 - first;
}

inline std::size_t fewestDigitsOf(double number) {
    constexpr int kEnough = std::numeric_limits<double>::max_digits10;
    char text[64];
    for (int digits = 1; digits < kEnough; ++digits) {
        (void)std::snprintf(text, sizeof text, "%.*e", digits - 1, number);
        if (std::strtod(text, nullptr) == number) {
            return static_cast<std::size_t>(digits);
        }
    }
    return kEnough;
}

inline void requireNumber(double number) {
    const OrbCSNumberOrString value(number);
    const std::string text = value.stringValue();
    const std::int64_t whole = value.integerValue();
    require(!value.isString(), "a number is no text");
    if (std::isnan(number)) {
        return require(text == "nan" && whole == 0, "not a number");
    }
    require(std::strtod(text.c_str(), nullptr) == number, "it reads back as the same number");
    if (std::isfinite(number) && number != 0) {
        requireECMAScriptForm(text, number);
        require(significantDigitsIn(text) <= fewestDigitsOf(number), "no digit is too many");
    }
    // 2 to the power of 63, the nearest number that a double has beyond either end of the range.
    constexpr double kEnd = 9'223'372'036'854'775'808.0;
    const bool isInRange = number > -kEnd && number < kEnd;
    require(isInRange ? static_cast<double>(whole) == std::trunc(number)
                      : whole == (number < 0 ? std::numeric_limits<std::int64_t>::min()
                                             : std::numeric_limits<std::int64_t>::max()),
            "cut to a whole number of the range");
}

inline void requireWholeNumber(const OrbCSNumberOrString& value, const std::string& text,
                               std::int64_t whole) {
    require(value.stringValue() == text, "a whole number is written in decimal");
    require(value.integerValue() == whole, "and limited to the range");
    require(OrbCSNumberOrString(text).integerValue() == whole, "as its text is");
}

/// A text is read as the C library reads it, whose locale is "C" here.
inline void requireText(const std::string& text) {
    const OrbCSNumberOrString value(text);
    require(value.isString() && value.stringValue() == text, "a text is as it is");
    require(value.integerValue() == std::strtoll(text.c_str(), nullptr, 10),
            "the decimal number that it begins with");
    require(value == OrbCSNumberOrString(text) && value != OrbCSNumberOrString(std::int64_t{0}),
            "a text is equal to itself, and to no number");
}

}  // namespace TkPPDUpdating::Fuzzing
