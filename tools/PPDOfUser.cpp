#include "tools/PPDOfUser.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <ios>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "ppd/PPDStatements.h"
#include "ppd/PPDTextFile.h"
#include "text/ASCII.h"
#include "text/UTF8.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"
#include "tools/SimilarWord.h"

namespace TkPPDUpdating {

namespace {

/// For a command line that is shown: in quotes when a shell would see more in it than a name.
std::string inShellQuotes(const std::string& path) {
    const bool isPlain = !path.empty() && std::ranges::all_of(path, [](char character) {
        return isASCIILetterOrDigit(character) ||
               std::string_view("./_-+").find(character) != std::string_view::npos;
    });
    if (isPlain) {
        return path.starts_with('-') ? "./" + path : path;
    }
    std::string quoted = "'";
    for (const char character : path) {
        quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return quoted + "'";
}

/// PPD specification 4.3, LanguageEncoding: the name that iconv(1) has for it. Most old PPDs are in
/// the first, and many do not say so.
std::string_view encodingOf(std::string_view text) {
    using Names = std::pair<std::string_view, std::string_view>;
    constexpr auto kEncodings = std::to_array<Names>({{"ISOLatin1", "ISO-8859-1"},
                                                      {"ISOLatin2", "ISO-8859-2"},
                                                      {"ISOLatin5", "ISO-8859-9"},
                                                      {"WindowsANSI", "WINDOWS-1252"},
                                                      {"MacStandard", "MACINTOSH"},
                                                      {"JIS83-RKSJ", "SHIFT_JIS"}});
    constexpr std::string_view kKeyword = "*LanguageEncoding:";
    std::size_t at = text.find(kKeyword);
    at = at == std::string_view::npos ? text.size() : at + kKeyword.size();
    at = std::min(text.find_first_not_of(" \t", at), text.size());
    const std::string_view name =
        text.substr(at, std::min(text.find_first_of(" \t\r\n", at), text.size()) - at);
    const auto found = std::ranges::find(kEncodings, name, &Names::first);
    return found == kEncodings.end() ? kEncodings.front().second : found->second;
}

bool isUTF16(std::string_view text) {
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
           (text.size() > 1 && (text[0] == '\0') != (text[1] == '\0'));
}

/// What to name instead of a text file that is no PPD.
std::string wayFromOtherFile(const std::string& path, std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (text.starts_with('{')) {
        return "if it is a recorded status, write \"--device-uri file:" + path +
               "\" and the path of a PPD file";
    }
    return text.starts_with('<') ? "it is a page of the web, save the file behind it"
                                 : "name the PPD file of the printer's driver";
}

/// What makes a text that is no PPD as it stands one that can be read; empty when it is not known.
std::string wayToPPD(const std::string& path, std::string_view text) {
    const std::string name = inShellQuotes(path);
    if (text.starts_with("\x1F\x8B")) {
        return "it is compressed, \"zcat <" + name + " >NEW.ppd\" unpacks it";
    }
    if (text.starts_with("\xEF\xBB\xBF")) {
        return "\"tail -c +4 " + name + " >NEW.ppd\" takes it away";
    }
    if (isUTF16(text)) {
        return "it is UTF-16, \"iconv -f UTF-16 -t UTF-8 " + name + " >NEW.ppd\" converts it";
    }
    if (firstInvalidUTF8Byte(text)) {
        const std::string encoding(encodingOf(text));
        return "if it is " + encoding + ", \"iconv -f " + encoding + " -t UTF-8 " + name +
               " | sed 's/^\\*LanguageEncoding:.*/*LanguageEncoding: UTF-8/' >NEW.ppd\" converts "
               "it";
    }
    return {};
}

/// How a file begins; empty when it is no regular file or cannot be read. Enough for a PPD's
/// encoding, which stands before its options.
std::string beginOfFile(const std::string& path) {
    constexpr std::streamsize kEnough = 65536;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return {};
    }
    std::string begin(kEnough, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(begin.data(), kEnough);
    begin.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return begin;
}

/// The name of a file in the same folder that was probably meant.
std::string questionForSimilarFile(const std::filesystem::path& path) {
    std::error_code error;
    const auto folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
    std::vector<std::string> names;
    for (std::filesystem::directory_iterator each(folder, error), end; !error && each != end;
         each.increment(error)) {
        names.push_back(each->path().filename().string());
    }
    std::ranges::sort(names);
    return questionForSimilarWord(path.filename().string(), names);
}

bool isMissing(const std::string& path) {
    std::error_code error;
    return std::filesystem::symlink_status(path, error).type() ==
           std::filesystem::file_type::not_found;
}

/// What was probably meant by the name of a file that is not there; empty when nothing comes to
/// mind.
std::string insteadOfMissingFile(const std::string& path) {
    if (path == "-") {
        return "; write /dev/stdin for standard input";
    }
    const std::size_t scheme = path.find("://");
    if (scheme != std::string::npos &&
        std::all_of(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(scheme),
                    [](char character) { return isASCIILetterOrDigit(character); })) {
        return "; it is a device URI, write \"--device-uri " + Diagnostics::withoutUserInfo(path) +
               "\" and the path of a PPD file";
    }
    return questionForSimilarFile(path);
}

[[noreturn]] void throwRefusedPPD(const std::string& path, const std::string& reason,
                                  std::string_view text) {
    std::string way = wayToPPD(path, text);
    if (way.empty() && reason.starts_with("is no PPD")) {
        way = wayFromOtherFile(path, text);
    }
    throw Failure(ExitStatus::noResult, path, way.empty() ? reason : reason + "; " + way);
}

/// The option within which a text breaks off. A PPD whose last line has its end is taken as it is:
/// there are some that never close an option.
std::optional<std::string> optionThatBreaksOff(std::string_view text) {
    if (text.empty() || text.ends_with('\n') || text.ends_with('\r')) {
        return std::nullopt;
    }
    const auto statements = PPDStatementsOfText(text);
    const bool isOpen = !statements.empty() && !statements.back().option.empty() &&
                        statements.back().keyword != "CloseUI" &&
                        statements.back().keyword != "JCLCloseUI";
    return isOpen ? std::optional(std::string(statements.back().option)) : std::nullopt;
}

}  // namespace

PPDText textOfUsersPPD(const std::string& path) {
    std::string reason;
    PPDText text = PPDTextWithContentsOfFile(path, &reason);
    if (!text) {
        throwUnreadablePPD(path, reason);
    }
    return text;
}

void throwUnreadablePPD(const std::string& path, const std::string& reason) {
    if (isMissing(path)) {
        throw Failure(ExitStatus::noResult, path, reason + insteadOfMissingFile(path));
    }
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        throw Failure(ExitStatus::noResult, path, reason + "; name a PPD file in it");
    }
    throwRefusedPPD(path, reason, beginOfFile(path));
}

std::shared_ptr<const PPDModelFile> PPDOfUser(const std::string& path, const PPDText& text) {
    std::string reason;
    auto file = PPDModelFile::fileWithText(text, &reason);
    if (!file && text->empty()) {
        throw Failure(ExitStatus::noResult, path, reason + "; get it once more");
    }
    if (!file) {
        throwRefusedPPD(path, reason, *text);
    }
    if (const auto option = optionThatBreaksOff(*text)) {
        throw Failure(ExitStatus::noResult, path,
                      "breaks off within the option " + *option +
                          ", without a line end; it is not whole, get it once more");
    }
    return file;
}

}  // namespace TkPPDUpdating
