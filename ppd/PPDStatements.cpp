#include "ppd/PPDStatements.h"

#include <algorithm>
#include <optional>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kBlanks = " \t\v\f\r\n";

bool isBlank(char character) {
    return kBlanks.find(character) != std::string_view::npos;
}

std::string_view withoutBlanksAround(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// The first line of the text, without its end.
std::string_view firstLine(std::string_view text) {
    const auto end = std::find_if(text.begin(), text.end(), [](char character) {
        return character == '\n' || character == '\r';
    });
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

/// The length of the line end that stands at the start of the text.
std::size_t lengthOfLineEnd(std::string_view text) {
    return text.empty() ? 0 : text.starts_with("\r\n") ? 2 : 1;
}

/// Follows a value's quotes over the lines of a statement: they count behind the first colon.
class OpenQuote {
  public:
    explicit OpenQuote(std::string_view firstLine) : isComment_(firstLine.starts_with("*%")) {}

    bool isOpenBehind(std::string_view line) {
        std::size_t from = 0;
        if (isComment_) {
            return false;
        }
        if (!isBehindColon_) {
            from = line.find(':');
            isBehindColon_ = from != std::string_view::npos;
        }
        if (isBehindColon_) {
            const auto quotes =
                std::count(line.begin() + static_cast<std::ptrdiff_t>(from), line.end(), '"');
            isOpen_ ^= quotes % 2 != 0;
        }
        return isOpen_;
    }

  private:
    bool isComment_;
    bool isBehindColon_ = false;
    bool isOpen_ = false;
};

/// The length of the statement that the text, which begins with no blank line, begins with.
std::size_t lengthOfStatement(std::string_view text) {
    std::string_view line = firstLine(text);
    OpenQuote quote(line);
    std::size_t end = line.size();
    bool isLong = false;
    while (quote.isOpenBehind(line) && end < text.size()) {
        end += lengthOfLineEnd(text.substr(end));
        line = firstLine(text.substr(end));
        end += line.size();
        isLong = true;
    }
    if (isLong) {
        const std::string_view rest = text.substr(end);
        const std::size_t lineEnd = lengthOfLineEnd(rest);
        const std::string_view next = firstLine(rest.substr(lineEnd));
        end += next == "*End" ? lineEnd + next.size() : 0;
    }
    return end;
}

/// Takes from the text what stands before the first of the characters, or all of it.
std::string_view takenUpTo(std::string_view& text, std::string_view characters) {
    const std::string_view taken = text.substr(0, text.find_first_of(characters));
    text.remove_prefix(taken.size());
    return taken;
}

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

void readValue(std::string_view rest, PPDStatement& statement) {
    constexpr std::string_view kEnd = "*End";
    const bool hasEnd =
        rest.ends_with(kEnd) && rest.find_first_of("\r\n") != std::string_view::npos;
    rest.remove_suffix(hasEnd ? kEnd.size() : 0);
    rest = withoutBlanksAround(rest);
    statement.isQuoted = rest.size() > 1 && rest.starts_with('"') && rest.ends_with('"');
    // libcups looks at the last character only, and takes the first off with it.
    const bool hasQuote = rest.size() > 1 && rest.ends_with('"');
    statement.value = hasQuote ? rest.substr(1, rest.size() - 2) : rest;
}

void readFields(PPDStatement& statement) {
    std::string_view rest = statement.lines;
    if (!rest.starts_with('*') || rest.starts_with("*%")) {
        return;
    }
    rest.remove_prefix(1);
    statement.keyword = takenUpTo(rest, ": \t\v\f\r\n");
    if (!rest.empty() && isBlank(rest.front())) {
        skipBlanks(rest);
        statement.optionKeyword = takenUpTo(rest, ":/ \t\v\f\r\n");
        skipBlanks(rest);
        if (rest.starts_with('/')) {
            rest.remove_prefix(1);
            statement.text = takenUpTo(rest, ":\n");
        }
    }
    if (rest.starts_with(':')) {
        readValue(rest.substr(1), statement);
    }
}

/// Which option and groups are open.
class Surroundings {
  public:
    /// Tells the statement where it stands; one that opens or closes stands inside.
    void visit(PPDStatement& statement) {
        const std::string_view keyword = statement.keyword;
        if (keyword == "OpenUI" || keyword == "JCLOpenUI") {
            option_ = withoutAsterisk(statement.optionKeyword);
        } else if (keyword == "OpenGroup" || keyword == "OpenSubGroup") {
            groups_.push_back(statement.value.substr(0, statement.value.find('/')));
        }
        statement.option = option_;
        statement.group = groups_.empty() ? std::string_view() : groups_.back();
        if (keyword == "CloseUI" || keyword == "JCLCloseUI") {
            option_ = {};
        } else if ((keyword == "CloseGroup" || keyword == "CloseSubGroup") && !groups_.empty()) {
            groups_.pop_back();
        }
    }

  private:
    static std::string_view withoutAsterisk(std::string_view name) {
        return name.starts_with('*') ? name.substr(1) : name;
    }

    std::string_view option_;
    std::vector<std::string_view> groups_;
};

}  // namespace

std::vector<PPDStatement> PPDStatementsOfText(std::string_view text) {
    std::vector<PPDStatement> statements;
    Surroundings surroundings;
    while (!text.empty()) {
        const std::string_view line = firstLine(text);
        if (withoutBlanksAround(line).empty()) {
            text.remove_prefix(line.size());
            text.remove_prefix(lengthOfLineEnd(text));
            continue;
        }
        PPDStatement& statement = statements.emplace_back();
        statement.index = statements.size() - 1;
        statement.lines = text.substr(0, lengthOfStatement(text));
        readFields(statement);
        surroundings.visit(statement);
        text.remove_prefix(statement.lines.size());
        text.remove_prefix(lengthOfLineEnd(text));
    }
    return statements;
}

std::string decodedPPDTranslation(std::string_view text) {
    std::string decoded;
    while (!text.empty()) {
        const bool isHexadecimal =
            text.front() == '<' && text.size() > 1 && hexadecimalDigitValue(text[1]);
        if (!isHexadecimal) {
            decoded += text.front();
            text.remove_prefix(1);
            continue;
        }
        text.remove_prefix(1);
        while (!text.empty() && hexadecimalDigitValue(text.front())) {
            const auto low = text.size() > 1 ? hexadecimalDigitValue(text[1]) : std::nullopt;
            if (low) {  // a digit alone counts for nothing
                decoded += static_cast<char>(*hexadecimalDigitValue(text.front()) * 16 + *low);
            }
            text.remove_prefix(low ? 2 : 1);
        }
        // What stands before the closing sign and is no digit counts for nothing.
        text.remove_prefix(std::min(text.find('>'), text.size()));
        text.remove_prefix(std::min(text.find_first_not_of('>'), text.size()));
    }
    return decoded;
}

}  // namespace TkPPDUpdating
