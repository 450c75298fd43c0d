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

template <typename Number>
std::string decimalText(Number number) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return {buffer.data(), end.ptr};
}

/// The fewest digits that read back as a finite number greater than 0, which is
/// 0.DIGITS times 10 to the power of `point`.
struct ShortestDigits {
    explicit ShortestDigits(double number) {
        std::array<char, 32> buffer{};
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                       std::chars_format::scientific);
        const std::string_view text(buffer.data(),
                                    static_cast<std::size_t>(end.ptr - buffer.data()));
        const std::size_t mark = text.find('e');
        digits = text.substr(0, 1);
        if (mark > 1) {
            digits += text.substr(2, mark - 2);
        }
        // "+" is no part of what from_chars reads.
        const std::size_t exponentStart = mark + (text[mark + 1] == '+' ? 2 : 1);
        std::from_chars(text.data() + exponentStart, text.data() + text.size(), point);
        ++point;
    }

    std::string digits;
    int point = 0;
};

/// As ECMAScript's Number::toString writes it.
std::string decimalTextOfPositive(double number) {
    constexpr int kMostDigitsBeforePoint = 21;
    constexpr int kMostZerosBehindPoint = 5;
    auto [digits, point] = ShortestDigits(number);
    const int count = static_cast<int>(digits.size());
    if (point > kMostDigitsBeforePoint || point < -kMostZerosBehindPoint) {
        if (count > 1) {
            digits.insert(1, 1, '.');
        }
        return digits + (point > 0 ? "e+" : "e") + std::to_string(point - 1);
    }
    if (point <= 0) {
        return "0." + std::string(static_cast<std::size_t>(-point), '0') + digits;
    }
    if (point < count) {
        return digits.insert(static_cast<std::size_t>(point), 1, '.');
    }
    return digits + std::string(static_cast<std::size_t>(point - count), '0');
}

std::string decimalText(double number) {
    if (!std::isfinite(number)) {
        return std::isnan(number) ? "nan" : number > 0 ? "inf" : "-inf";
    }
    if (number == 0) {
        return "0";
    }
    return number < 0 ? "-" + decimalTextOfPositive(-number) : decimalTextOfPositive(number);
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
