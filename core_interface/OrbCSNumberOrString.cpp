#include "core_interface/OrbCSNumberOrString.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <type_traits>

namespace TkPPDUpdating {

namespace {

constexpr double kSmallestWithoutExponent = 1e-6;
constexpr double kLargestWithoutExponent = 1e21;

template <typename Number, typename... Format>
std::string decimalText(Number number, Format... format) {
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, format...);
    return {buffer.data(), end.ptr};
}

std::string decimalText(double number) {
    if (!std::isfinite(number)) {
        return std::isnan(number) ? "nan" : number > 0 ? "inf" : "-inf";
    }
    const double size = std::fabs(number);
    const bool plain =
        size == 0 || (size >= kSmallestWithoutExponent && size < kLargestWithoutExponent);
    return decimalText(number == 0 ? 0.0 : number,
                       plain ? std::chars_format::fixed : std::chars_format::scientific);
}

std::int64_t wholeNumber(double number) {
    using Limits = std::numeric_limits<std::int64_t>;
    if (std::isnan(number)) {
        return 0;
    }
    // 2^63 is a double; Limits::max() is not, and would be rounded up to it.
    constexpr double kBeyondLargest = 9223372036854775808.0;
    if (number >= kBeyondLargest) {
        return Limits::max();
    }
    return number < -kBeyondLargest ? Limits::min() : static_cast<std::int64_t>(number);
}

std::int64_t wholeNumber(std::string_view text) {
    using Limits = std::numeric_limits<std::int64_t>;
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool negative = text.starts_with('-');
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return 0;
        }
    }
    std::int64_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec == std::errc::result_out_of_range) {
        return negative ? Limits::min() : Limits::max();
    }
    return number;
}

}  // namespace

std::string OrbCSNumberOrString::stringValue() const {
    return std::visit(
        [](const auto& value) -> std::string {
            if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::string>) {
                return value;
            } else {
                return decimalText(value);
            }
        },
        value_);
}

std::int64_t OrbCSNumberOrString::integerValue() const {
    return std::visit(
        [](const auto& value) -> std::int64_t {
            using Value = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<Value, std::int64_t>) {
                return value;
            } else if constexpr (std::is_same_v<Value, std::uint64_t>) {
                constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();
                return value > static_cast<std::uint64_t>(kLargest)
                           ? kLargest
                           : static_cast<std::int64_t>(value);
            } else {
                return wholeNumber(value);
            }
        },
        value_);
}

}  // namespace TkPPDUpdating
