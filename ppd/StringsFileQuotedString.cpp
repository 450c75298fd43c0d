#include "ppd/StringsFileQuotedString.h"

#include <algorithm>

#include "text/ASCII.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

std::optional<unsigned> digitOfBase(char character, unsigned base) {
    const auto digit = hexadecimalDigitValue(character);
    return digit && *digit < base ? digit : std::nullopt;
}

}  // namespace

std::optional<std::string> StringsFileQuotedString::read() {
    std::string string;
    while (at_ < text_.size()) {
        const std::size_t stop = std::min(text_.find_first_of("\"\\", at_), text_.size());
        string += text_.substr(at_, stop - at_);
        at_ = stop + 1;
        if (stop < text_.size() && text_[stop] == '"') {
            return string;
        }
        if (stop < text_.size() && !readEscape(string)) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

bool StringsFileQuotedString::readEscape(std::string& string) {
    if (at_ == text_.size()) {
        return false;
    }
    constexpr std::string_view kLetters = "abfnrtv";
    constexpr std::string_view kMeanings = "\a\b\f\n\r\t\v";
    const char character = text_[at_];
    if (const std::size_t letter = kLetters.find(character); letter != std::string_view::npos) {
        string += kMeanings[letter];
        ++at_;
        return true;
    }
    if (digitOfBase(character, 8)) {
        return readOctal(string);
    }
    ++at_;
    if (character == 'U') {
        return readUTF16(string);
    }
    string += character;
    return true;
}

bool StringsFileQuotedString::readOctal(std::string& string) {
    constexpr unsigned kLargest = 0xFF;
    constexpr int kMostDigits = 3;
    unsigned codePoint = 0;
    for (int digits = 0; digits < kMostDigits && at_ < text_.size(); ++digits) {
        const auto digit = digitOfBase(text_[at_], 8);
        if (!digit) {
            break;
        }
        codePoint = codePoint * 8 + *digit;
        ++at_;
    }
    appendUTF8(codePoint, string);
    return codePoint <= kLargest;
}

std::optional<char32_t> StringsFileQuotedString::readUnit() {
    constexpr int kDigits = 4;
    char32_t unit = 0;
    for (int i = 0; i < kDigits; ++i) {
        const auto digit =
            at_ < text_.size() ? digitOfBase(text_[at_], 16) : std::optional<unsigned>();
        if (!digit) {
            return std::nullopt;
        }
        unit = unit * 16 + *digit;
        ++at_;
    }
    return unit;
}

bool StringsFileQuotedString::readUTF16(std::string& string) {
    const auto unit = readUnit();
    const auto isIn = [](std::optional<char32_t> each, char32_t first, char32_t last) {
        return each && *each >= first && *each <= last;
    };
    if (!unit || isIn(unit, 0xDC00, 0xDFFF)) {
        return false;
    }
    if (!isIn(unit, 0xD800, 0xDBFF)) {
        appendUTF8(*unit, string);
        return true;
    }
    constexpr std::string_view kEscape = "\\U";
    if (!text_.substr(at_).starts_with(kEscape)) {
        return false;
    }
    at_ += kEscape.size();
    const auto low = readUnit();
    if (!isIn(low, 0xDC00, 0xDFFF)) {
        return false;
    }
    appendUTF8(0x10000U + ((*unit - 0xD800U) << 10U) + (*low - 0xDC00U), string);
    return true;
}

}  // namespace TkPPDUpdating
