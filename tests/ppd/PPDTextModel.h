#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TkPPDUpdating::Testing {

/// What `OrbPPDProcessor` must do, told as plainly as possible: a list of strings that every
/// look-up reads from the top. Slow, and without an index, a view or a block to go wrong. Written
/// apart from the processor, so that the two can be compared.
class PPDTextModel {
  public:
    using MaybeText = std::optional<std::string>;
    using Texts = std::vector<std::string>;
    using Range = std::pair<std::size_t, std::size_t>;
    static constexpr std::size_t kNotFound = PTRDIFF_MAX;

    /// Case folding of the letters that the tests use.
    static char32_t foldedLetterOfTests(char32_t character) {
        if (character >= U'A' && character <= U'Z') {
            return character + 0x20;
        }
        switch (character) {
            case 0xC9:
                return 0xE9;  // E with acute
            case 0x212A:
                return U'k';  // Kelvin sign
            case 0x17F:
                return U's';  // long s
            default:
                return character;
        }
    }

    /// What stands for a character where case is ignored. At first it knows the letters that the
    /// tests use.
    inline static char32_t (*folding)(char32_t) = foldedLetterOfTests;

    explicit PPDTextModel(std::string content) : content_(std::move(content)) {}

    Texts& lines() {
        if (!lines_) {
            lines_ = split(*content_, '\n');
            if (lines_->back().empty()) {
                lines_->pop_back();
            }
        }
        return *lines_;
    }

    std::string content() {
        if (!content_) {
            lines_->emplace_back();
            content_ = joined(*lines_, '\n');
        }
        return *content_;
    }

    void clearContent() { content_.reset(); }

    std::size_t insertLocation() const { return insertLocation_; }
    void setInsertLocation(std::size_t index) { insertLocation_ = std::min(index, lines().size()); }

    const Texts& localizations() {
        if (!localizations_) {
            const MaybeText languages = value("cupsLanguages", std::nullopt);
            localizations_ = languages ? split(*languages, ' ') : Texts();
        }
        return *localizations_;
    }

    static bool scan(std::string_view line, std::string_view keyword,
                     const std::optional<std::string>& spec,
                     const std::optional<std::string>& value) {
        if (!take(line, "*") || !take(line, keyword)) {
            return false;
        }
        if (spec) {
            if (!takeSpaces(line) || !take(line, *spec) || !(take(line, ":") || take(line, "/"))) {
                return false;
            }
        } else if (!take(line, ":")) {
            return false;
        }
        return !value || (takeSpaces(line) && take(line, *value));
    }

    Range range(const MaybeText& keyword, const MaybeText& spec, const MaybeText& value) {
        const Texts& all = lines();
        for (std::size_t i = 0; keyword && i < all.size(); ++i) {
            if (scan(all[i], *keyword, spec, value)) {
                const std::size_t first = all[i].find('"');
                if (first == std::string::npos ||
                    all[i].find('"', first + 1) != std::string::npos) {
                    return {i, 1};
                }
                for (std::size_t end = i + 1; end < all.size(); ++end) {
                    if (all[end] == "*End") {
                        return {i, end - i + 1};
                    }
                }
                return {kNotFound, 0};
            }
        }
        return {kNotFound, 0};
    }

    /// Throws std::out_of_range when only spaces follow the colon of an unquoted value.
    MaybeText value(const MaybeText& keyword, const MaybeText& spec) {
        const auto [location, length] = range(keyword, spec, std::nullopt);
        if (length == 0) {
            return std::nullopt;
        }
        const auto begin = lines().begin() + static_cast<std::ptrdiff_t>(location);
        const std::string text =
            joined(Texts(begin, begin + static_cast<std::ptrdiff_t>(length)), ' ');
        const std::size_t quote = text.find('"');
        if (quote != std::string::npos) {
            const std::size_t second = text.find('"', quote + 1);
            return second == std::string::npos
                       ? std::nullopt
                       : MaybeText(text.substr(quote + 1, second - quote - 1));
        }
        std::size_t position = text.find(':');
        if (position == std::string::npos) {
            return std::nullopt;
        }
        do {
            ++position;
        } while (text.at(position) == ' ');
        const std::string rest = text.substr(position);
        std::string_view afterFirst = rest;
        const bool isOneUnit = takeCharacter(afterFirst) < 0x10000 && afterFirst.empty();
        return isOneUnit ? std::nullopt : MaybeText(rest);
    }

    std::size_t remove(const MaybeText& keyword, const MaybeText& spec, const MaybeText& value) {
        const Range found = range(keyword, spec, value);
        if (found.second == 0) {
            return found.first;
        }
        erase(found);
        Texts languages = localizations();
        languages.emplace_back("en");
        for (const std::string& language : languages) {
            erase(range(language + "." + *keyword, spec, std::nullopt));
        }
        clearContent();
        return found.first;
    }

    bool insert(const MaybeText& keyword, const MaybeText& spec, const MaybeText& text,
                const MaybeText& value, bool wrap) {
        if (!keyword || !value) {
            return false;
        }
        std::string line = "*" + *keyword;
        Texts translations;
        if (spec) {
            line += " " + *spec;
        }
        if (spec && text) {
            const std::string savvy = cutTo79(*text);
            const std::string rest = "." + *keyword + " " + *spec + "/" + savvy + ": \"\"";
            if (isASCII(savvy)) {
                line += "/" + savvy;
            } else {
                translations.push_back("*en" + rest);
            }
            for (const std::string& language : localizations()) {
                translations.emplace_back("*").append(language).append(rest);
            }
        }
        line += ": " + *value;
        std::optional<Texts> all = Texts{line};
        if (line.size() >= 256) {
            all = wrap ? wrapped(line) : std::nullopt;
        }
        if (!all) {
            return false;
        }
        all->insert(all->end(), translations.begin(), translations.end());
        insertLines(*all);
        clearContent();
        return true;
    }

    void insertLines(const Texts& newLines) {
        if (insertLocation_ > lines().size()) {
            throw std::out_of_range("insert location");
        }
        lines().insert(lines().begin() + static_cast<std::ptrdiff_t>(insertLocation_),
                       newLines.begin(), newLines.end());
        insertLocation_ += newLines.size();
    }

    static std::optional<Texts> wrapped(const std::string& line) {
        Texts result;
        std::string current;
        bool isFirst = true;
        for (const std::string& word : split(line, ' ')) {
            if (word.size() > 255) {
                return std::nullopt;
            }
            if (current.size() + word.size() >= 256) {
                result.push_back(current);
                current = word;
            } else {
                current += (isFirst ? "" : " ") + word;
            }
            isFirst = false;
        }
        const bool hasBreaks = !result.empty();
        result.push_back(current);
        if (hasBreaks) {
            result.emplace_back("*End");
        }
        return result;
    }

    void eraseLine(std::size_t index) {
        lines().erase(lines().begin() + static_cast<std::ptrdiff_t>(index));
    }
    void insertLine(std::size_t index, const std::string& line) {
        lines().insert(lines().begin() + static_cast<std::ptrdiff_t>(index), line);
    }

  private:
    static Texts split(const std::string& text, char separator) {
        Texts parts(1);
        for (const char c : text) {
            if (c == separator) {
                parts.emplace_back();
            } else {
                parts.back() += c;
            }
        }
        return parts;
    }

    static std::string joined(const Texts& parts, char separator) {
        std::string text;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            text += (i == 0 ? "" : std::string(1, separator)) + parts[i];
        }
        return text;
    }

    /// Takes the first character off a text that is not empty.
    static char32_t takeCharacter(std::string_view& text) {
        const auto first = static_cast<unsigned char>(text.front());
        const std::size_t length = first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        char32_t character = length == 1 ? first : first & (0xFFU >> (length + 1));
        for (std::size_t i = 1; i < length; ++i) {
            character = (character << 6) | (static_cast<unsigned char>(text[i]) & 0x3FU);
        }
        text.remove_prefix(length);
        return character;
    }

    /// Takes the prefix off the line, case ignored, when the line begins with it.
    static bool take(std::string_view& line, std::string_view prefix) {
        std::string_view rest = line;
        while (!prefix.empty()) {
            if (rest.empty()) {
                return false;
            }
            const char32_t character = takeCharacter(rest);
            const char32_t wanted = takeCharacter(prefix);
            if (character != wanted && folding(character) != folding(wanted)) {
                return false;
            }
        }
        line = rest;
        return true;
    }

    static bool takeSpaces(std::string_view& line) {
        const std::size_t before = line.size();
        while (line.starts_with(' ')) {
            line.remove_prefix(1);
        }
        return line.size() < before;
    }

    static bool isASCII(const std::string& text) {
        for (const char c : text) {
            if (static_cast<unsigned char>(c) > 0x7F) {
                return false;
            }
        }
        return true;
    }

    static std::string cutTo79(std::string text) {
        while (text.size() > 79) {
            while ((static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) {
                text.pop_back();
            }
            text.pop_back();
        }
        return text;
    }

    void erase(const Range& range) {
        if (range.second > 0) {
            const auto begin = lines().begin() + static_cast<std::ptrdiff_t>(range.first);
            lines().erase(begin, begin + static_cast<std::ptrdiff_t>(range.second));
        }
    }

    std::optional<Texts> lines_;
    std::optional<std::string> content_;
    std::optional<Texts> localizations_;
    std::size_t insertLocation_ = 0;
};

}  // namespace TkPPDUpdating::Testing
