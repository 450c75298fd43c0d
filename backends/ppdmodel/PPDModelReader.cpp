#include "backends/ppdmodel/PPDModelReader.h"

#include <algorithm>
#include <array>

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kFirstKeyword = "*PPD-Adobe";
constexpr std::string_view kComment = "*%";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
/// Room for that many bytes a line is more than most PPDs need; what is not used costs nothing.
constexpr std::size_t kShortTypicalLine = 32;

bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

bool endsOptionKeyword(char character) {
    return character == '/' || character == ':';
}

constexpr auto kEndsKeyword = [] {
    std::array<bool, 256> ends{};
    for (const char character : {' ', '\t', '/', ':'}) {
        ends[static_cast<unsigned char>(character)] = true;
    }
    return ends;
}();

bool endsKeyword(char character) {
    return kEndsKeyword[static_cast<unsigned char>(character)];
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

std::size_t PPDModelReader::endOfLine(std::size_t from) const {
    return std::min(text_.find('\n', from), text_.size());
}

std::size_t PPDModelReader::lineNumber(std::size_t at) const {
    const auto end = text_.begin() + static_cast<std::ptrdiff_t>(at);
    return 1 + static_cast<std::size_t>(std::count(text_.begin(), end, '\n'));
}

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
                  : "line " + std::to_string(lineNumber(start)) + " does not begin with \"" +
                        std::string(kFirstKeyword) + "\"";
    return false;
}

bool PPDModelReader::readValue(std::string_view line, std::size_t from, std::string_view& value,
                               std::string& reason) {
    if (from == line.size()) {
        value = {};
        return true;
    }
    if (line[from] != '"') {
        value = withoutTrailingBlanks(line.substr(from));
        return true;
    }
    const std::size_t start = at_ + from + 1;
    const std::size_t close = text_.find('"', start);
    if (close == std::string_view::npos) {
        reason = "has a quoted value that never closes, opened on line " +
                 std::to_string(lineNumber(at_));
        return false;
    }
    value = text_.substr(start, close - start);
    if (close > at_ + line.size()) {
        value = joinedValues.emplace_back(joinedLines(value));
        next_ = endOfLine(close) + 1;
    }
    return true;
}

bool PPDModelReader::readLine(std::string& reason) {
    const std::size_t end = endOfLine(at_);
    next_ = end + 1;
    if (text_[at_] != '*') {
        return true;
    }
    std::string_view line = text_.substr(at_, end - at_);
    if (end < text_.size()) {
        line = withoutCarriageReturn(line);
    }
    if (line.starts_with(kComment)) {
        return true;
    }
    std::size_t at = positionOf(line, 1, endsKeyword);
    const std::string_view keyword = line.substr(1, at - 1);
    const std::size_t specStart = afterBlanks(line, at);
    at = positionOf(line, specStart, endsOptionKeyword);
    const std::string_view spec = withoutTrailingBlanks(line.substr(specStart, at - specStart));
    std::string_view text;
    if (at < line.size() && line[at] == '/') {
        const std::size_t textStart = at + 1;
        at = std::min(line.find(':', textStart), line.size());
        text = line.substr(textStart, at - textStart);
    }
    if (at == line.size()) {
        return true;
    }
    std::string_view value;
    if (!readValue(line, afterBlanks(line, at + 1), value, reason)) {
        return false;
    }
    attributes.emplace_back(keyword, spec, text, value);
    return true;
}

bool PPDModelReader::read(std::string& reason) {
    if (!beginsAsPPD(reason)) {
        return false;
    }
    if (const std::size_t at = text_.find('\0'); at != std::string_view::npos) {
        reason = "has a NUL byte at byte " + std::to_string(at);
        return false;
    }
    attributes.reserve(text_.size() / kShortTypicalLine);
    for (at_ = 0; at_ < text_.size(); at_ = next_) {
        if (!readLine(reason)) {
            return false;
        }
    }
    return true;
}

}  // namespace TkPPDUpdating
