#include "backends/postscript/PostScriptAnswers.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace TkPPDUpdating {

namespace {

/// PostScript Language Reference, third edition, section 3.11, and what `stop` without an error is
/// called here. An error of another name is no word of ours to show.
constexpr auto kErrors = std::to_array<std::string_view>(
    {"configurationerror", "dictfull",       "dictstackoverflow", "dictstackunderflow",
     "execstackoverflow",  "interrupt",      "invalidaccess",     "invalidexit",
     "invalidfileaccess",  "invalidfont",    "invalidrestore",    "ioerror",
     "limitcheck",         "nocurrentpoint", "rangecheck",        "stackoverflow",
     "stackunderflow",     "stop",           "syntaxerror",       "timeout",
     "typecheck",          "undefined",      "undefinedfilename", "undefinedresource",
     "undefinedresult",    "unmatchedmark",  "unregistered",      "VMerror"});

/// The text without the messages that a printer may put anywhere, each on one line.
std::string withoutMessages(std::string_view text) {
    constexpr std::string_view kOpening = "%%[";
    constexpr std::string_view kClosing = "]%%";
    std::string rest;
    for (;;) {
        const std::size_t opening = text.find(kOpening);
        const std::size_t closing = opening == std::string_view::npos
                                        ? std::string_view::npos
                                        : text.find(kClosing, opening + kOpening.size());
        if (closing == std::string_view::npos) {
            rest += text;
            return rest;
        }
        const std::size_t end = text.substr(opening, closing - opening).find_first_of("\r\n");
        if (end == std::string_view::npos) {
            rest += text.substr(0, opening);
            text.remove_prefix(closing + kClosing.size());
        } else {
            rest += text.substr(0, opening + end);
            text.remove_prefix(opening + end);
        }
    }
}

/// Where a line begins with the text, from `from` on; the end of the text when none does.
std::size_t lineBeginningWith(std::string_view beginning, std::string_view text, std::size_t from) {
    constexpr std::string_view kLineEnds = "\r\n";
    for (std::size_t at = text.find(beginning, from); at != std::string_view::npos;
         at = text.find(beginning, at + 1)) {
        if (at == 0 || kLineEnds.find(text[at - 1]) != std::string_view::npos) {
            return at;
        }
    }
    return text.size();
}

/// The rest of the line behind its beginning at `at`; nothing when the line is not there, or has no
/// end yet.
std::optional<std::string_view> restOfLine(std::string_view text, std::size_t at,
                                           std::size_t lengthOfBeginning) {
    const std::size_t end = text.find_first_of("\r\n", std::min(at, text.size()));
    return end == std::string_view::npos
               ? std::nullopt
               : std::optional(text.substr(at + lengthOfBeginning, end - at - lengthOfBeginning));
}

std::string_view withoutQuotesAround(std::string_view text) {
    constexpr std::string_view kAround = " \t\v\f\r\n\"";
    const std::size_t begin = text.find_first_not_of(kAround);
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(kAround) - begin + 1);
}

}  // namespace

std::optional<PostScriptAnswer> postScriptAnswer(std::string_view received,
                                                 const PostScriptMark& mark,
                                                 std::string_view label) {
    const std::string text = withoutMessages(received);
    const std::string beginning = mark.text() + " " + std::string(label) + " begin";
    const std::string end = mark.text() + " " + std::string(label) + " end ";
    const bool isQuestion = label != PostScriptJob::kReady;
    const std::size_t from = isQuestion ? lineBeginningWith(beginning, text, 0) : 0;
    const std::size_t to = lineBeginningWith(end, text, from);
    const auto error = restOfLine(text, to, end.size());
    if (!error) {
        return std::nullopt;
    }
    PostScriptAnswer answer;
    if (isQuestion) {
        answer.text = withoutQuotesAround(
            std::string_view(text).substr(from + beginning.size(), to - from - beginning.size()));
    }
    answer.isWhole = *error == "none";
    if (std::ranges::find(kErrors, *error) != kErrors.end()) {
        answer.error = *error;
    }
    return answer;
}

std::optional<std::string> reasonForNoChoice(const PostScriptAnswer& answer,
                                             const std::vector<std::string>& choices) {
    if (std::ranges::find(choices, answer.text) != choices.end() && !answer.text.empty()) {
        return std::nullopt;
    }
    if (!answer.isWhole) {
        return "the question ends in an error of the printer's" +
               (answer.error.empty() ? "" : " (" + answer.error + ")");
    }
    if (answer.text == "Unknown") {
        return "the printer does not know";
    }
    return answer.text.empty() ? "the printer answers nothing"
                               : "the answer is none of the option's choices";
}

}  // namespace TkPPDUpdating
