#include "backends/schemes/InkColours.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

// Orange begins below a hue of 45, violet ends at 280; cyan and magenta inks on paper are bluer and
// redder than the pure colours.
constexpr std::array<PrimaryInkColour, 4> kPrimaries = {
    {{"C", "cyan", 160, 200}, {"M", "magenta", 280, 330}, {"Y", "yellow", 45, 75}, {"K", "black"}}};
constexpr int kBrightestBlack = 0x33;
constexpr int kLeastPercent = 60;

struct Colour {
    int red = 0;
    int green = 0;
    int blue = 0;
};

std::optional<Colour> colourWithDigits(std::string_view digits) {
    constexpr int kHexadecimal = 16;
    Colour colour;
    int* const parts[] = {&colour.red, &colour.green, &colour.blue};
    for (std::size_t index = 0; index < 3; ++index) {
        const char* first = digits.data() + 2 * index;
        const auto read = std::from_chars(first, first + 2, *parts[index], kHexadecimal);
        if (read.ec != std::errc() || read.ptr != first + 2 || *first == '-') {
            return std::nullopt;
        }
    }
    return colour;
}

/// Degrees, rounded down; the colour is no grey.
int hueOf(const Colour& colour, int greatest, int range) {
    constexpr int kSixth = 60;
    if (greatest == colour.red) {
        return (kSixth * (colour.green - colour.blue) / range + 6 * kSixth) % (6 * kSixth);
    }
    return greatest == colour.green ? 2 * kSixth + kSixth * (colour.blue - colour.red) / range
                                    : 4 * kSixth + kSixth * (colour.red - colour.green) / range;
}

/// Empty when the colour is near no primary.
std::string_view nearPrimary(const Colour& colour) {
    const int greatest = std::max({colour.red, colour.green, colour.blue});
    const int range = greatest - std::min({colour.red, colour.green, colour.blue});
    if (greatest <= kBrightestBlack) {
        return kPrimaries.back().dye;
    }
    constexpr int kGreatestPart = 255;
    if (range * 100 < greatest * kLeastPercent || greatest * 100 < kGreatestPart * kLeastPercent) {
        return {};
    }
    const int hue = hueOf(colour, greatest, range);
    const auto primary =
        std::find_if(kPrimaries.begin(), kPrimaries.end(), [hue](const PrimaryInkColour& each) {
            return each.firstHue <= hue && hue <= each.lastHue;
        });
    return primary == kPrimaries.end() ? std::string_view() : primary->dye;
}

/// Of "#RRGGBB#RRGGBB"; empty when one of them is none.
std::vector<std::string> dyesOfNumbers(std::string_view numbers) {
    constexpr std::size_t kLength = 7;
    std::vector<std::string> dyes;
    for (; !numbers.empty(); numbers.remove_prefix(kLength)) {
        const auto colour = numbers.size() >= kLength && numbers.front() == '#'
                                ? colourWithDigits(numbers.substr(1, kLength - 1))
                                : std::nullopt;
        const std::string_view dye = colour ? nearPrimary(*colour) : std::string_view();
        if (dye.empty()) {
            return {};
        }
        dyes.emplace_back(dye);
    }
    return dyes;
}

}  // namespace

std::span<const PrimaryInkColour> primaryInkColours() {
    return kPrimaries;
}

std::vector<std::string> dyesOfInkColour(std::string_view colour) {
    if (colour.starts_with('#')) {
        return dyesOfNumbers(colour);
    }
    const std::string name = textInASCIILowerCase(colour);
    const bool isNone = name.empty() || name == "none" || name == "unknown" || name == "other";
    if (isNone || name.find(',') != std::string::npos) {
        return {};
    }
    const auto primary =
        std::find_if(kPrimaries.begin(), kPrimaries.end(),
                     [&name](const PrimaryInkColour& each) { return each.name == name; });
    return {std::string(primary == kPrimaries.end() ? colour : primary->dye)};
}

}  // namespace TkPPDUpdating
