#include "backends/ppdmodel/PPDModelReader.h"

#include <algorithm>
#include <utility>

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kFirstKeyword = "*PPD-Adobe";
constexpr std::string_view kComment = "*%";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

bool endsOptionKeyword(char character) {
    return character == '/' || character == ':';
}

/// The first position from `from` on where `ends` holds, or the length of the line.
template <typename Ends>
std::size_t positionOf(std::string_view line, std::size_t from, const Ends& ends) {
    while (from < line.size() && !ends(line[from])) {
        ++from;
    }
    return from;
}

std::size_t afterBlanks(std::string_view line, std::size_t from) {
    return positionOf(line, from, [](char character) { return !isBlank(character); });
}

std::string_view withoutTrailingBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string_view withoutCarriageReturn(std::string_view line) {
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

/// The lines of a quoted value with one space between each two.
std::string joinedLines(std::string_view value) {
    std::string joined;
    joined.reserve(value.size());
    for (std::size_t end = value.find('\n'); end != std::string_view::npos;
         end = value.find('\n')) {
        joined += withoutCarriageReturn(value.substr(0, end));
        joined += ' ';
        value.remove_prefix(end + 1);
    }
    return joined += value;
}

}  // namespace

bool PPDModelReader::beginsAsPPD(std::string& reason) const {
    const std::size_t start = text_.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos) {
        reason = text_.empty() ? "is no PPD: it is empty" : "is no PPD: it is blank";
        return false;
    }
    const bool atLineStart = start == 0 || text_[start - 1] == '\n';
    if (atLineStart && text_.substr(start).starts_with(kFirstKeyword)) {
        return true;
    }
    reason = "is no PPD: ";
    reason += text_.starts_with(kByteOrderMark)
                  ? "it begins with a byte order mark"
                  : "line " + std::to_string(index_->lineAt(start) + 1) +
                        " does not begin with \"" + std::string(kFirstKeyword) + "\"";
    return false;
}

bool PPDModelReader::isPPD(std::string& reason) const {
    if (!beginsAsPPD(reason)) {
        return false;
    }
    if (const auto at = index_->firstNULByte()) {
        reason = "has a NUL byte at byte " + std::to_string(*at);
        return false;
    }
    const auto values = index_->longValues();
    if (!values.empty() && values.back().closes == index_->size()) {
        reason = "has a quoted value that never closes, opened on line " +
                 std::to_string(values.back().opens + 1);
        return false;
    }
    return true;
}

/// From behind the opening quote to the closing one, which is there.
std::string_view PPDModelReader::quotedValue(std::size_t start) const {
    return text_.substr(start, text_.find('"', start) - start);
}

std::optional<PPDModelAttribute> PPDModelReader::attributeAt(PPDTextIndex::Line number) const {
    std::string_view line = index_->line(number);
    if (!line.starts_with('*') || line.starts_with(kComment)) {
        return std::nullopt;
    }
    const auto* const longValue = index_->longValueAt(number);
    if (longValue && longValue->opens < number) {
        return std::nullopt;
    }
    if (number + 1 < index_->size() || index_->endsWithLineFeed()) {
        line = withoutCarriageReturn(line);
    }
    const std::string_view keyword = PPDTextIndex::keywordPart(line.substr(1));
    const std::size_t specStart = afterBlanks(line, 1 + keyword.size());
    std::size_t at = positionOf(line, specStart, endsOptionKeyword);
    const std::string_view spec = withoutTrailingBlanks(line.substr(specStart, at - specStart));
    std::string_view text;
    if (at < line.size() && line[at] == '/') {
        const std::size_t textStart = at + 1;
        at = std::min(line.find(':', textStart), line.size());
        text = line.substr(textStart, at - textStart);
    }
    if (at == line.size()) {
        return std::nullopt;
    }
    std::string_view value;
    std::optional<std::string> joinedValue;
    const std::size_t from = afterBlanks(line, at + 1);
    if (from < line.size() && line[from] == '"') {
        value = quotedValue(index_->start(number) + from + 1);
        if (longValue) {
            joinedValue = joinedLines(value);
        }
    } else if (from < line.size()) {
        value = withoutTrailingBlanks(line.substr(from));
    }
    return PPDModelAttribute(number, keyword, spec, text, value, std::move(joinedValue));
}

}  // namespace TkPPDUpdating
