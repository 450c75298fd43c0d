#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A scalar that a device reports: an integer, a floating-point number or a text. Immutable.
class TKPPDUPDATING_PUBLIC OrbCSNumberOrString {
  public:
    explicit OrbCSNumberOrString(std::int64_t number) : value_(number) {}        ///< An integer.
    explicit OrbCSNumberOrString(std::uint64_t number) : value_(number) {}       ///< An integer.
    explicit OrbCSNumberOrString(double number) : value_(number) {}              ///< A number.
    explicit OrbCSNumberOrString(std::string text) : value_(std::move(text)) {}  ///< A text.

    /// A text as it is; an integer in decimal; a floating-point number in its shortest decimal form
    /// that reads back as the same number, as ECMAScript (ECMA-262, Number::toString) writes it:
    /// without exponent below 10^21 and from 10^-6 up ("1200", "-0.5"), with one otherwise
    /// ("1e+21", "1e-7"); "nan", "inf" and "-inf" for what is not finite.
    std::string stringValue() const;

    /// A number cut to a whole one, towards zero, and limited to the range of the type; not a
    /// number is 0. A text counts as the decimal integer that it begins with (after white space),
    /// else 0.
    std::int64_t integerValue() const;

    /// Whether it holds a text rather than a number.
    bool isString() const { return std::holds_alternative<std::string>(value_); }

    friend bool operator==(const OrbCSNumberOrString&, const OrbCSNumberOrString&) = default;

  private:
    std::variant<std::int64_t, std::uint64_t, double, std::string> value_;
};

}  // namespace TkPPDUpdating
