#include "resources/PropertyListReader.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "ppd/PPDTextFile.h"
#include "resources/XMLScanner.h"
#include "text/UTF8.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kRootName = "plist";
/// Far more than any property list needs, and far less than the stack has room for.
constexpr unsigned kDeepestNesting = 64;

/// The number that `text` is, whole; nothing when it is none or out of range.
template <typename Number, typename... Format>
std::optional<Number> numberFrom(std::string_view text, Format... format) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, format...);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// A decimal number that may have a sign.
template <typename Number>
std::optional<Number> signedNumberFrom(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    return numberFrom<Number>(text);
}

/// ISO 8601 as property lists write it: YYYY-MM-DDThh:mm:ssZ, in UTC.
std::optional<PropertyList::Date> dateFrom(std::string_view text) {
    constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:ddZ";
    for (std::size_t i = 0; i < kForm.size() && text.size() == kForm.size(); ++i) {
        if (kForm[i] == 'd' ? text[i] < '0' || text[i] > '9' : text[i] != kForm[i]) {
            return std::nullopt;
        }
    }
    if (text.size() != kForm.size()) {
        return std::nullopt;
    }
    const auto part = [text](std::size_t start, std::size_t length) {
        return numberFrom<int>(text.substr(start, length)).value_or(0);
    };
    const std::chrono::year_month_day day(std::chrono::year(part(0, 4)),
                                          std::chrono::month(static_cast<unsigned>(part(5, 2))),
                                          std::chrono::day(static_cast<unsigned>(part(8, 2))));
    const int hour = part(11, 2);
    const int minute = part(14, 2);
    const int second = part(17, 2);
    if (!day.ok() || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return std::chrono::sys_days(day) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
           std::chrono::seconds(second);
}

/// Base64 (RFC 4648) with white space anywhere.
std::optional<PropertyList::Data> dataFrom(std::string_view text) {
    constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    PropertyList::Data data;
    std::uint32_t bits = 0;
    unsigned digits = 0;
    unsigned padding = 0;
    for (const char each : text) {
        if (each == ' ' || each == '\t' || each == '\n' || each == '\r') {
            continue;
        }
        const std::size_t digit = kAlphabet.find(each);
        if (each == '=' ? ++padding > 2 : padding > 0 || digit == std::string_view::npos) {
            return std::nullopt;
        }
        bits = (bits << 6U) | (each == '=' ? 0U : static_cast<std::uint32_t>(digit));
        if (++digits % 4 == 0) {
            for (unsigned i = 0; i < 3 - padding; ++i) {
                data.bytes.push_back(static_cast<std::uint8_t>(bits >> (16 - 8 * i)));
            }
            bits = 0;
        }
    }
    return digits % 4 == 0 ? std::optional(std::move(data)) : std::nullopt;
}

/// Reads one property list; raises `XMLError` where it is none.
class Reader {
  public:
    explicit Reader(std::string_view text) : scanner_(text) {}

    PropertyList read() {
        scanner_.skipProlog(kRootName);
        const XMLScanner::Tag root = scanner_.nextTag();
        if (root.name != kRootName || !root.opens || root.closes) {
            scanner_.fail("no element plist that holds a value");
        }
        const bool hasVersion = root.attributeName == "version" && root.attributeValue == "1.0";
        if (!root.attributeName.empty() && !hasVersion) {
            scanner_.fail("a property list of another version than 1.0");
        }
        PropertyList value = valueWithTag(elementTag(scanner_.nextTag()), 1);
        expectEndOf(kRootName);
        scanner_.skipMisc();
        if (!scanner_.isAtEnd()) {
            scanner_.fail("something follows the property list");
        }
        return value;
    }

  private:
    /// The tag, when it opens an element that has no attribute.
    XMLScanner::Tag elementTag(const XMLScanner::Tag& tag) const {
        if (!tag.opens) {
            scanner_.fail("an end tag where a value is expected");
        }
        if (!tag.attributeName.empty()) {
            scanner_.fail("an attribute that property lists do not have");
        }
        return tag;
    }

    void expectEndOf(std::string_view name) {
        const XMLScanner::Tag tag = scanner_.nextTag();
        if (tag.opens || tag.name != name) {
            scanner_.fail("the end of the element " + std::string(name) + " is missing");
        }
    }

    /// The next value of the element `name`, or nothing at its end.
    std::optional<XMLScanner::Tag> nextElementIn(std::string_view name) {
        const XMLScanner::Tag tag = scanner_.nextTag();
        if (!tag.opens && tag.name == name) {
            return std::nullopt;
        }
        return elementTag(tag);
    }

    std::string textOf(const XMLScanner::Tag& tag) {
        if (tag.closes) {
            return {};
        }
        std::string text = scanner_.characterData();
        expectEndOf(tag.name);
        return text;
    }

    /// The text of the element as `parsed` reads it.
    template <typename Parse>
    PropertyList parsed(const XMLScanner::Tag& tag, const Parse& parse) {
        auto value = parse(textOf(tag));
        if (!value) {
            scanner_.fail("no value of the type " + std::string(tag.name));
        }
        return {std::move(*value)};
    }

    PropertyList boolean(const XMLScanner::Tag& tag, bool value) {
        if (!tag.closes) {
            expectEndOf(tag.name);
        }
        return {value};
    }

    PropertyList valueWithTag(const XMLScanner::Tag& tag, unsigned depth) {
        if (depth > kDeepestNesting) {
            scanner_.fail("values nested too deeply");
        }
        if (tag.name == "dict") {
            return {dictionary(tag, depth)};
        }
        if (tag.name == "array") {
            return {array(tag, depth)};
        }
        if (tag.name == "string") {
            return {textOf(tag)};
        }
        if (tag.name == "integer") {
            return parsed(tag, integerFrom);
        }
        if (tag.name == "real") {
            return parsed(tag, realFrom);
        }
        if (tag.name == "date") {
            return parsed(tag, dateFrom);
        }
        if (tag.name == "data") {
            return parsed(tag, dataFrom);
        }
        if (tag.name != "true" && tag.name != "false") {
            scanner_.fail("an element that property lists do not have");
        }
        return boolean(tag, tag.name == "true");
    }

    PropertyList::Dictionary dictionary(const XMLScanner::Tag& tag, unsigned depth) {
        PropertyList::Dictionary entries;
        while (!tag.closes) {
            const auto keyTag = nextElementIn(tag.name);
            if (!keyTag) {
                break;
            }
            if (keyTag->name != "key") {
                scanner_.fail("a value without a key in a dictionary");
            }
            std::string key = textOf(*keyTag);
            if (entries.contains(key)) {
                scanner_.fail("a key that the dictionary has already");
            }
            PropertyList value = valueWithTag(elementTag(scanner_.nextTag()), depth + 1);
            entries.emplace(std::move(key), std::move(value));
        }
        return entries;
    }

    PropertyList::Array array(const XMLScanner::Tag& tag, unsigned depth) {
        PropertyList::Array values;
        while (!tag.closes) {
            const auto valueTag = nextElementIn(tag.name);
            if (!valueTag) {
                break;
            }
            values.push_back(valueWithTag(*valueTag, depth + 1));
        }
        return values;
    }

    static std::optional<std::int64_t> integerFrom(std::string_view text) {
        return signedNumberFrom<std::int64_t>(text);
    }

    static std::optional<double> realFrom(std::string_view text) {
        const auto number = signedNumberFrom<double>(text);
        return number && std::isfinite(*number) ? number : std::nullopt;
    }

    XMLScanner scanner_;
};

}  // namespace

std::optional<PropertyList> PropertyListReader::propertyListWithText(std::string_view text,
                                                                     std::string* reason) {
    try {
        if (const auto invalid = firstInvalidUTF8Byte(text)) {
            XMLScanner::failAfter(text.substr(0, *invalid), "not valid UTF-8");
        }
        return Reader(text).read();
    } catch (const XMLError& error) {
        if (reason) {
            *reason = error.what();
        }
        return std::nullopt;
    }
}

std::optional<PropertyList> PropertyListReader::propertyListWithContentsOfFile(
    const std::string& path, std::string* reason) {
    const PPDText text = PPDTextWithContentsOfFile(path, reason);
    return text ? propertyListWithText(*text, reason) : std::nullopt;
}

}  // namespace TkPPDUpdating
