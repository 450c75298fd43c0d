// The property list reader: any text is read or refused with a reason, and a value that was read is
// the same when it is written down plainly and read again.
#include <array>
#include <charconv>
#include <cstdio>
#include <string>

#include "fuzz/FuzzTarget.h"
#include "resources/PropertyListReader.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

/// The text as character data, in which every byte that could be read as another one is a
/// reference.
std::string escaped(const std::string& text) {
    std::string data;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < ' ' || character == '<' || character == '&' || character == '>') {
            data += "&#" + std::to_string(byte) + ";";
        } else {
            data += character;
        }
    }
    return data;
}

std::string element(const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string textOf(const PropertyList& list);

struct Writer {
    std::string operator()(const PropertyList::Dictionary& entries) const {
        std::string content;
        for (const auto& [key, value] : entries) {
            content += element("key", escaped(key)) + textOf(value);
        }
        return element("dict", content);
    }
    std::string operator()(const PropertyList::Array& values) const {
        std::string content;
        for (const PropertyList& value : values) {
            content += textOf(value);
        }
        return element("array", content);
    }
    std::string operator()(const std::string& text) const {
        return element("string", escaped(text));
    }
    std::string operator()(std::int64_t number) const {
        return element("integer", std::to_string(number));
    }
    std::string operator()(double number) const {
        std::array<char, 64> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        return element("real", std::string(digits.data(), end));
    }
    std::string operator()(bool truth) const { return truth ? "<true/>" : "<false/>"; }
    std::string operator()(PropertyList::Date date) const {
        const auto day = std::chrono::floor<std::chrono::days>(date);
        const std::chrono::year_month_day ymd(day);
        const std::chrono::hh_mm_ss time(date - day);
        std::array<char, 64> digits{};
        (void)std::snprintf(
            digits.data(), digits.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
            static_cast<int>(ymd.year()), static_cast<unsigned>(ymd.month()),
            static_cast<unsigned>(ymd.day()), static_cast<int>(time.hours().count()),
            static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
        return element("date", digits.data());
    }
    std::string operator()(const PropertyList::Data& data) const {
        constexpr std::string_view kAlphabet =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        std::string content;
        for (std::size_t start = 0; start < data.bytes.size(); start += 3) {
            std::uint32_t bits = 0;
            for (std::size_t i = start; i < start + 3; ++i) {
                bits = bits * 256 + (i < data.bytes.size() ? data.bytes[i] : 0U);
            }
            const std::size_t digits = std::min<std::size_t>(data.bytes.size() - start, 3) + 1;
            for (std::size_t digit = 0; digit < 4; ++digit) {
                content += digit < digits ? kAlphabet[(bits >> (18 - 6 * digit)) & 63U] : '=';
            }
        }
        return element("data", content);
    }
};

std::string textOf(const PropertyList& list) {
    return std::visit(Writer(), list.value);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOfInput(data, size);
    std::string reason;
    const auto list = PropertyListReader::propertyListWithText(text, &reason);
    if (!list) {
        require(!reason.empty(), "a refused text has a reason");
        return 0;
    }
    const std::string written = element("plist", textOf(*list));
    require(PropertyListReader::propertyListWithText(written) == list, "it reads back as the same");
    return 0;
}
