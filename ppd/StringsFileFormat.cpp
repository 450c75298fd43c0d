#include "ppd/StringsFileFormat.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "ppd/PPDConstants.h"
#include "ppd/StringsFileQuotedString.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kPairFormat = "%@=%@;";

/// The lead bytes EE and EF (U+E000 to U+FFFF) come behind those of the characters above U+FFFF,
/// whose UTF-16 units are surrogates (D800 to DFFF).
unsigned rankInUTF16(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value == 0xEE || value == 0xEF ? value + 0x10U : value;
}

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
            StringsFileQuotedString reader(text_.substr(at_ + 1));
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
    std::size_t size = 0;
    for (const auto& [key, value] : dictionary) {
        size += key.size() + value.size() + kPairFormat.size();
    }
    std::string text;
    text.reserve(size);
    for (const auto& [key, value] : dictionary) {
        appendPPDFormatted(kPairFormat, {key, value}, text);
    }
    return text;
}

std::optional<StringsDictionary> propertyListFromStringsFileFormat(std::string_view text) {
    return StringsFileReader(text).read();
}

}  // namespace TkPPDUpdating
