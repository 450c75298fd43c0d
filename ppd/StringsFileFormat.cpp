#include "ppd/StringsFileFormat.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "ppd/PPDConstants.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kPairFormat = "%@=%@;";

/// The lead bytes EE and EF (U+E000 to U+FFFF) come behind those of the characters above U+FFFF,
/// whose UTF-16 units are surrogates (D800 to DFFF).
unsigned rankInUTF16(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value == 0xEE || value == 0xEF ? value + 0x10U : value;
}

void appendCodePoint(std::string& text, char32_t codePoint) {
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    const auto appendContinuation = [&](unsigned shift) {
        append(0x80U | ((codePoint >> shift) & 0x3FU));
    };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0U | (codePoint >> 6U));
        appendContinuation(0);
    } else if (codePoint < 0x10000) {
        append(0xE0U | (codePoint >> 12U));
        appendContinuation(6);
        appendContinuation(0);
    } else {
        append(0xF0U | (codePoint >> 18U));
        appendContinuation(12);
        appendContinuation(6);
        appendContinuation(0);
    }
}

std::optional<unsigned> digitOfBase(char character, unsigned base) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const char lower =
        character >= 'A' && character <= 'F' ? static_cast<char>(character - 'A' + 'a') : character;
    const std::size_t digit = kDigits.find(lower);
    return digit < base ? std::optional(static_cast<unsigned>(digit)) : std::nullopt;
}

/// Reads a quoted string, from behind its opening quote.
class QuotedStringReader {
  public:
    explicit QuotedStringReader(std::string_view text) : text_(text) {}

    /// The string without its escapes; nothing when it is malformed or not closed.
    std::optional<std::string> read() {
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

    /// How many bytes were read, the closing quote included.
    std::size_t length() const { return at_; }

  private:
    /// Reads what follows a backslash.
    bool readEscape(std::string& string) {
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

    bool readOctal(std::string& string) {
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
        appendCodePoint(string, codePoint);
        return codePoint <= kLargest;
    }

    /// The unit written in four hexadecimal digits.
    std::optional<char32_t> readUnit() {
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

    /// A character from one unit, or from the two units of a surrogate pair.
    bool readUTF16(std::string& string) {
        const auto unit = readUnit();
        const auto isIn = [](std::optional<char32_t> each, char32_t first, char32_t last) {
            return each && *each >= first && *each <= last;
        };
        if (!unit || isIn(unit, 0xDC00, 0xDFFF)) {
            return false;
        }
        if (!isIn(unit, 0xD800, 0xDBFF)) {
            appendCodePoint(string, *unit);
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
        appendCodePoint(string, 0x10000U + ((*unit - 0xD800U) << 10U) + (*low - 0xDC00U));
        return true;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

class StringsFileReader {
  public:
    explicit StringsFileReader(std::string_view text) : text_(text) {}

    std::optional<StringsDictionary> read() {
        StringsDictionary dictionary;
        while (true) {
            skipBlanksAndComments(Place::kBetweenPairs);
            if (isAtEnd()) {
                return dictionary;
            }
            auto key = readWord(kSeparatorsOfKey);
            if (!key) {
                return std::nullopt;
            }
            auto value = readValueFor(*key);
            if (!value) {
                return std::nullopt;
            }
            dictionary.insert_or_assign(std::move(key->text), std::move(*value));
        }
    }

  private:
    enum class Place : std::uint8_t { kBetweenPairs, kInPair };

    struct Word {
        std::string text;
        bool isQuoted = false;
    };

    static constexpr std::string_view kSeparatorsOfKey = "=;";
    static constexpr std::string_view kSeparatorOfPairs = ";";

    bool isAtEnd() const { return at_ == text_.size(); }
    bool isAtOneOf(std::string_view characters) const {
        return !isAtEnd() && characters.find(text_[at_]) != std::string_view::npos;
    }

    /// The value behind a key, with the separators around it.
    std::optional<std::string> readValueFor(const Word& key) {
        const bool isAlone = text_[at_] == ';';
        ++at_;
        mayOpenComment_ = isAlone;
        if (isAlone) {
            return key.isQuoted || !key.text.empty() ? std::optional(key.text) : std::nullopt;
        }
        auto value = readWord(kSeparatorOfPairs);
        if (!value) {
            return std::nullopt;
        }
        ++at_;
        mayOpenComment_ = true;
        return std::move(value->text);
    }

    /// The next word up to its separator, which is not read; nothing when there is none.
    std::optional<Word> readWord(std::string_view separators) {
        skipBlanksAndComments(Place::kInPair);
        Word word;
        if (isAtOneOf("\"")) {
            QuotedStringReader reader(text_.substr(at_ + 1));
            auto string = reader.read();
            if (!string) {
                return std::nullopt;
            }
            at_ += 1 + reader.length();
            mayOpenComment_ = true;
            skipBlanksAndComments(Place::kInPair);
            word = {std::move(*string), true};
        } else {
            word.text = readBareWord(separators);
        }
        return isAtOneOf(separators) ? std::optional(std::move(word)) : std::nullopt;
    }

    /// The separator is looked for first: a comment that is not closed before it is no comment, so
    /// that a written value that holds what opens one never swallows the pairs behind it.
    std::string_view readBareWord(std::string_view separators) {
        const std::size_t stop = std::min(text_.find_first_of(separators, at_), text_.size());
        const std::string_view word = text_.substr(at_, stop - at_);
        at_ = stop;
        return StringsFileReader(word).withoutBlanksAndCommentsAtTheEnd();
    }

    std::string_view withoutBlanksAndCommentsAtTheEnd() {
        std::size_t end = 0;
        while (!isAtEnd()) {
            ++at_;
            end = at_;
            mayOpenComment_ = false;
            skipBlanksAndComments(Place::kInPair);
        }
        return text_.substr(0, end);
    }

    void skipBlanksAndComments(Place place) {
        while (true) {
            const std::string_view rest = text_.substr(at_);
            const std::size_t blank = lengthOfBlank(rest);
            const std::size_t length = blank > 0 ? blank : lengthOfComment(rest, place);
            if (length == 0) {
                return;
            }
            at_ += length;
            mayOpenComment_ = true;
        }
    }

    static std::size_t lengthOfLineSeparator(std::string_view text) {
        constexpr std::string_view kLineSeparator = "\u2028";
        constexpr std::string_view kParagraphSeparator = "\u2029";
        return text.starts_with(kLineSeparator) || text.starts_with(kParagraphSeparator)
                   ? kLineSeparator.size()
                   : 0;
    }

    static std::size_t lengthOfBlank(std::string_view text) {
        if (text.empty()) {
            return 0;
        }
        const char first = text.front();
        return first == ' ' || (first >= '\t' && first <= '\r') ? 1 : lengthOfLineSeparator(text);
    }

    /// The length of the comment that the text begins with, 0 when that is none here.
    std::size_t lengthOfComment(std::string_view text, Place place) {
        if (!mayOpenComment_) {
            return 0;
        }
        if (text.starts_with("/*")) {
            const std::size_t close =
                canCloseComment_ ? text.find("*/", 2) : std::string_view::npos;
            canCloseComment_ = close != std::string_view::npos;
            return canCloseComment_ ? close + 2 : 0;
        }
        if (text.starts_with("//")) {
            const std::size_t close = canCloseLine_ ? endOfLine(text) : text.size();
            canCloseLine_ = close < text.size();
            return canCloseLine_ || place == Place::kBetweenPairs ? close : 0;
        }
        return 0;
    }

    static std::size_t endOfLine(std::string_view text) {
        std::size_t at = 0;
        while (at < text.size() && text[at] != '\n' && text[at] != '\r' &&
               lengthOfLineSeparator(text.substr(at)) == 0) {
            ++at;
        }
        return at;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    /// Whether what was read last lets a comment open here.
    bool mayOpenComment_ = true;
    /// False once nothing further on closes a comment, so that a hostile text is not searched again
    /// and again.
    bool canCloseComment_ = true;
    bool canCloseLine_ = true;
};

}  // namespace

bool OrderByUTF16Units::operator()(std::string_view left, std::string_view right) const {
    return std::lexicographical_compare(
        left.begin(), left.end(), right.begin(), right.end(),
        [](char a, char b) { return rankInUTF16(a) < rankInUTF16(b); });
}

std::string zrlumen_keysAndValuesInPPDStringsFileFormat(const StringsDictionary& dictionary) {
    std::string text;
    for (const auto& [key, value] : dictionary) {
        text += PPDFormatted(kPairFormat, {key, value});
    }
    return text;
}

std::optional<StringsDictionary> propertyListFromStringsFileFormat(std::string_view text) {
    return StringsFileReader(text).read();
}

}  // namespace TkPPDUpdating
