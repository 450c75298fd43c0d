#include "sync/AddedStatements.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "ppd/PPDTextSafety.h"
#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

/// PPD specification 4.3, section 3.2.
constexpr std::size_t kLongestKeyword = 40;
/// The scheduler's library reads no value that is longer (CUPS: ppd.c, 256 KiB).
constexpr std::size_t kLongestStatement = 262143;

constexpr std::array<std::string_view, 5> kProgramKeywords = {
    "cupsfilter", "cupsprefilter", "cupsportmonitor", "apprinterpreset", "foomaticrip"};

bool beginsWithIgnoringCase(std::string_view text, std::string_view lowerCasePrefix) {
    return text.size() >= lowerCasePrefix.size() &&
           std::equal(lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(),
                      [](char left, char right) { return left == inASCIILowerCase(right); });
}

bool isKeyword(std::string_view text) {
    return text.size() <= kLongestKeyword &&
           std::all_of(text.begin(), text.end(),
                       [](char character) { return character > ' ' && character <= '~'; });
}

/// One with a slash stops the scheduler's library; behind an option keyword it begins a text.
bool isMainKeyword(std::string_view text) {
    return isKeyword(text) && text.find('/') == std::string_view::npos;
}

bool hasControlCharacter(std::string_view text) {
    // A quote is none, and what is no UTF-8 is for others to refuse.
    std::string withoutQuotes(text);
    std::erase(withoutQuotes, '"');
    return reasonTextCannotStandInPPDLine(withoutQuotes).has_value();
}

/// Each line of a statement.
template <typename Reason>
std::optional<std::string> firstReasonOfLines(std::string_view lines, const Reason& reason) {
    while (true) {
        const std::size_t end = lines.find('\n');
        if (auto found = reason(lines.substr(0, end))) {
            return found;
        }
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        lines.remove_prefix(end + 1);
    }
}

std::optional<std::string> reasonOfLine(std::string_view line) {
    if (line.size() > kLongestPPDLine) {
        return "would be " + std::to_string(line.size()) + " bytes long";
    }
    return hasControlCharacter(line) ? std::optional<std::string>("would hold a control character")
                                     : std::nullopt;
}

std::optional<std::string> reasonOfForm(const PPDStatement& statement, const OwnedLines& owned) {
    if (!isMainKeyword(statement.keyword) || !isKeyword(statement.optionKeyword)) {
        return "would have a keyword that is none";
    }
    if (!statement.keyword.empty() && statement.lines.find(':') == std::string_view::npos) {
        return "would have no value";
    }
    if (statement.lines.size() > kLongestStatement) {
        return "would be " + std::to_string(statement.lines.size()) + " bytes long";
    }
    if (hasControlCharacter(decodedPPDTranslation(statement.text))) {
        return "would hold a control character";
    }
    const std::string_view quoted = statement.isQuoted ? statement.value : statement.lines;
    const bool hasOneLine = statement.lines.find_first_of("\r\n") == std::string_view::npos;
    const bool mayHaveMore = !owned.isAttribute(statement) && !owned.isDefault(statement);
    if (quoted.find('"') != std::string_view::npos || !(hasOneLine || mayHaveMore)) {
        return "would go on beyond its end";
    }
    return firstReasonOfLines(statement.lines, reasonOfLine);
}

bool namesProgram(const PPDStatement& statement) {
    return std::any_of(kProgramKeywords.begin(), kProgramKeywords.end(),
                       [&](std::string_view keyword) {
                           return beginsWithIgnoringCase(statement.keyword, keyword);
                       });
}

}  // namespace

std::string nameOfStatement(const PPDStatement& statement) {
    if (statement.keyword.empty()) {
        return "no keyword";
    }
    if (!isKeyword(statement.keyword) || !isKeyword(statement.optionKeyword)) {
        return "a keyword that cannot be shown";
    }
    return std::string(statement.keyword) + (statement.optionKeyword.empty() ? "" : " ") +
           std::string(statement.optionKeyword);
}

std::optional<std::string> reasonNotToAdd(const PPDStatement& statement, const OwnedLines& owned) {
    if (namesProgram(statement)) {
        return "it would get a new line of " + nameOfStatement(statement) +
               ", which names a program";
    }
    const auto reason = reasonOfForm(statement, owned);
    return reason ? std::optional("a new line of " + nameOfStatement(statement) + " " + *reason)
                  : std::nullopt;
}

}  // namespace TkPPDUpdating
