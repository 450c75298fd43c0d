#include "tools/UnifiedDiff.h"

#include <algorithm>
#include <cstddef>

#include "tools/Diagnostics.h"
#include "tools/Terminal.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kBold = "\033[1m";
constexpr std::string_view kRed = "\033[31m";
constexpr std::string_view kGreen = "\033[32m";
constexpr std::string_view kCyan = "\033[36m";
constexpr std::string_view kPlain = "\033[0m";

/// A range of lines as a hunk's header has it, with its length even where diff(1) leaves out a
/// length of one.
std::string withLength(std::string_view range) {
    return std::string(range) + (range.find(',') == std::string_view::npos ? ",1" : "");
}

/// "@@ -1 +1,2 @@" as "@@ -1,1 +1,2 @@".
std::string hunkHeader(std::string_view header) {
    const std::size_t old = header.find('-');
    const std::size_t updated = header.find(" +", old);
    const std::size_t end = header.find(" @@", updated);
    return std::string(header.substr(0, old)) + withLength(header.substr(old, updated - old)) +
           withLength(header.substr(updated, end - updated)) + std::string(header.substr(end));
}

/// Writes down the lines of a diff for its reader.
class DiffWriter {
  public:
    explicit DiffWriter(DiffStyle style)
        : isColoured_(style == DiffStyle::colouredForTerminal),
          isForTerminal_(style != DiffStyle::forPrograms) {}

    /// Adds a line without its line feed.
    void addLine(std::string_view colour, std::string_view line) {
        const std::string_view start = isColoured_ ? colour : "";
        text_.append(start);
        text_.append(isForTerminal_ ? shown(line) : std::string(line));
        text_.append(start.empty() ? "" : kPlain).append("\n");
    }

    /// Adds a line of a hunk, which its first character tells from others.
    void addHunkLine(std::string_view line) {
        switch (line.empty() ? ' ' : line.front()) {
            case '@':
                return addLine(kCyan, hunkHeader(line));
            case '+':
                return addLine(kGreen, line);
            case '-':
                return addLine(kRed, line);
            default:
                return addLine("", line);
        }
    }

    const std::string& text() const { return text_; }

  private:
    /// Tabs stay: they are what the line looks like.
    static std::string shown(std::string_view content) {
        std::string shown;
        for (std::size_t tab = content.find('\t'); tab != std::string_view::npos;
             tab = content.find('\t')) {
            shown += Diagnostics::printable(content.substr(0, tab)) + "\t";
            content.remove_prefix(tab + 1);
        }
        return shown += Diagnostics::printable(content);
    }

    bool isColoured_;
    bool isForTerminal_;
    std::string text_;
};

/// A name as it may stand in a header line: GNU diff and patch read a name with other characters
/// as a C string.
std::string nameInHeader(const std::string& name) {
    const bool isPlain = name.find_first_of("\"\\") == std::string::npos &&
                         Diagnostics::printable(name) == name && !name.starts_with(' ');
    if (isPlain) {
        // A tab ends a name with blanks in it.
        return name + (name.find(' ') == std::string::npos ? "" : "\t");
    }
    std::string quoted = "\"";
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            quoted.append("\\").append(1, character);
        } else if (byte < 0x20 || byte >= 0x7F) {
            quoted += '\\';
            for (const unsigned shift : {6U, 3U, 0U}) {
                quoted += static_cast<char>('0' + ((byte >> shift) & 7U));
            }
        } else {
            quoted += character;
        }
    }
    return quoted + "\"";
}

}  // namespace

DiffStyle diffStyleForStandardOutput() {
    if (!Terminal::isBehindStandardOutput()) {
        return DiffStyle::forPrograms;
    }
    return Terminal::standardOutputTakesColour() ? DiffStyle::colouredForTerminal
                                                 : DiffStyle::forTerminal;
}

std::string unifiedDiff(const std::string& name, std::string_view before, std::string_view after,
                        DiffStyle style, const DiffProgram& diff) {
    if (before == after) {
        return {};
    }
    DiffWriter writer(style);
    writer.addLine(kBold, "--- " + nameInHeader(name));
    writer.addLine(kBold, "+++ " + nameInHeader(name));
    const std::string hunks = diff.hunks(name, before, after);
    for (std::string_view rest = hunks; !rest.empty();) {
        const std::size_t end = rest.find('\n');
        writer.addHunkLine(rest.substr(0, end));
        rest.remove_prefix(std::min(end, rest.size() - 1) + 1);
    }
    return writer.text();
}

}  // namespace TkPPDUpdating
