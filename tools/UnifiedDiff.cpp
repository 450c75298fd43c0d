#include "tools/UnifiedDiff.h"

#include <git2.h>

#include <cstdint>

#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/Terminal.h"

namespace TkPPDUpdating {

namespace {

constexpr std::uint32_t kContextLines = 3;

constexpr std::string_view kBold = "\033[1m";
constexpr std::string_view kRed = "\033[31m";
constexpr std::string_view kGreen = "\033[32m";
constexpr std::string_view kCyan = "\033[36m";
constexpr std::string_view kPlain = "\033[0m";

/// The library must be started and stopped; it counts.
class GitLibrary {
  public:
    GitLibrary() { git_libgit2_init(); }
    GitLibrary(const GitLibrary&) = delete;
    GitLibrary& operator=(const GitLibrary&) = delete;
    ~GitLibrary() { git_libgit2_shutdown(); }
};

/// Receives hunks and lines and writes them down.
class DiffWriter {
  public:
    explicit DiffWriter(DiffStyle style)
        : isColoured_(style == DiffStyle::colouredForTerminal),
          isForTerminal_(style != DiffStyle::forPrograms) {}

    void addLine(std::string_view colour, std::string_view mark, std::string_view content) {
        const bool endsWithLineFeed = content.ends_with('\n');
        content.remove_suffix(endsWithLineFeed ? 1 : 0);
        const std::string_view start = isColoured_ ? colour : "";
        text_.append(start).append(mark);
        text_.append(isForTerminal_ ? shown(content) : std::string(content));
        text_.append(start.empty() ? "" : kPlain);
        text_ += endsWithLineFeed ? "\n" : "";
    }

    /// What the library says after a line without a line feed.
    void addRemark(std::string_view remark) { text_ += remark; }

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

int addHunk(const git_diff_delta* /*delta*/, const git_diff_hunk* hunk, void* writer) {
    const std::string header =
        "@@ -" + std::to_string(hunk->old_start) + "," + std::to_string(hunk->old_lines) + " +" +
        std::to_string(hunk->new_start) + "," + std::to_string(hunk->new_lines) + " @@\n";
    static_cast<DiffWriter*>(writer)->addLine(kCyan, "", header);
    return 0;
}

int addLine(const git_diff_delta* /*delta*/, const git_diff_hunk* /*hunk*/,
            const git_diff_line* line, void* payload) {
    auto* writer = static_cast<DiffWriter*>(payload);
    const std::string_view content(line->content, line->content_len);
    switch (line->origin) {
        case GIT_DIFF_LINE_ADDITION:
            writer->addLine(kGreen, "+", content);
            break;
        case GIT_DIFF_LINE_DELETION:
            writer->addLine(kRed, "-", content);
            break;
        case GIT_DIFF_LINE_CONTEXT:
            writer->addLine("", " ", content);
            break;
        default:
            writer->addRemark(content);
    }
    return 0;
}

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
                        DiffStyle style) {
    if (before == after) {
        return {};
    }
    DiffWriter writer(style);
    writer.addLine(kBold, "--- ", nameInHeader(name) + "\n");
    writer.addLine(kBold, "+++ ", nameInHeader(name) + "\n");

    const GitLibrary library;
    git_diff_options options{};
    git_diff_options_init(&options, GIT_DIFF_OPTIONS_VERSION);
    options.context_lines = kContextLines;
    options.flags = GIT_DIFF_FORCE_TEXT;
    if (git_diff_buffers(before.data(), before.size(), nullptr, after.data(), after.size(), nullptr,
                         &options, nullptr, nullptr, addHunk, addLine, &writer) != 0) {
        throw Failure(ExitStatus::noResult, name, "is too large for a diff");
    }
    return writer.text();
}

}  // namespace TkPPDUpdating
