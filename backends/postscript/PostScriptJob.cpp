#include "backends/postscript/PostScriptJob.h"

#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

/// What a question has no use for, and would print a page, end the job, leave the printer changed
/// for those behind it or read what is sent behind the question.
constexpr auto kOperatorsNoQuestionMayName = std::to_array<std::string_view>(
    {"showpage", "copypage", "quit", "startjob", "exitserver", "serverdict", "currentfile"});

/// As a rule it stands among all operators, in level 1 with what belongs to the printer.
constexpr std::string_view kProductCode =
    "/product where {/product get exec} {statusdict /product get exec} ifelse "
    "dup type /stringtype eq {print flush} if";

/// Names end with the first half of the mark (@), so that no question defines the same. They are
/// bound: a dictionary that a question leaves open may have any word in it.
///
/// A: prints its operand at the start of a line, behind the mark. Q: label and code. W: the
/// operators that no question may name, where `~` stands; one that calls them is stopped by them
/// instead, until restore.
constexpr std::string_view kProcedures = R"(userdict begin
/TkD@ countdictstack 1 sub def
/TkA@ {(\n#) print (@ ) print print (\n) print flush} bind def
/TkE@ {$error /newerror get {$error /errorname get 99 string cvs} {(stop)} ifelse} bind def
/TkW@ [~] def
/TkQ@ {
userdict exch /TkC@ exch put
userdict exch /TkL@ exch put
userdict /TkS@ save put
TkW@ {userdict exch /stop load put} bind forall
(\n#) print (@ ) print TkL@ print ( begin\n) print flush
$error /newerror false put
TkC@ cvx stopped {TkE@} {(none)} ifelse
userdict exch /TkN@ exch put
clear
(\n#) print (@ ) print TkL@ print ( end ) print TkN@ print (\n) print flush
{countdictstack TkD@ le {exit} if end} bind loop
TkS@ restore
} bind def
end
)";

/// The text with what its signs stand for.
std::string filledIn(std::string_view text, const PostScriptMark& mark) {
    std::string filled;
    for (const char character : text) {
        if (character == '@') {
            filled += mark.first;
        } else if (character == '#') {
            filled += mark.second;
        } else if (character == '~') {
            for (const std::string_view name : kOperatorsNoQuestionMayName) {
                filled += "/" + std::string(name) + " ";
            }
        } else {
            filled += character;
        }
    }
    return filled;
}

/// "<0a1b...>" in lines that every spooler takes.
std::string hexadecimalString(std::string_view bytes) {
    constexpr std::size_t kBytesInLine = 60;
    std::string text = "<";
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (index > 0 && index % kBytesInLine == 0) {
            text += '\n';
        }
        const auto byte = static_cast<unsigned char>(bytes[index]);
        text += kDigits[byte / kDigits.size()];
        text += kDigits[byte % kDigits.size()];
    }
    return text + ">";
}

}  // namespace

PostScriptMark PostScriptMark::random() {
    std::array<unsigned char, 16> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::system_error(errno, std::generic_category(), "no random digits");
    }
    std::string digits;
    for (const unsigned char byte : bytes) {
        digits += kDigits[byte / kDigits.size()];
        digits += kDigits[byte % kDigits.size()];
    }
    return {digits.substr(0, bytes.size()), digits.substr(bytes.size())};
}

PostScriptJob::PostScriptJob(const OrbCSPostScriptQuestions& questions, PostScriptMark mark)
    : questions_(questions), mark_(std::move(mark)) {}

std::string PostScriptJob::beginning() const {
    return questions_.beginning + "%!PS-Adobe-3.0 Query\n" + filledIn(kProcedures, mark_) + "(" +
           std::string(kReady) + " end none) TkA" + mark_.first + "\n";
}

std::string PostScriptJob::productQuestion() const {
    return asked(kProduct, kProductCode);
}

std::string PostScriptJob::question(std::size_t index) const {
    return asked(label(index), questions_.questions.at(index).code);
}

std::string PostScriptJob::asked(std::string_view label, std::string_view code) const {
    return "(" + std::string(label) + ") " + hexadecimalString(code) + " TkQ" + mark_.first + "\n";
}

std::string_view PostScriptJob::operatorNoQuestionMayName(std::string_view code) {
    // PostScript Language Reference, third edition, section 3.2: white space and delimiters.
    constexpr std::string_view kBetweenWords("\0\t\n\f\r ()<>[]{}/%", 16);
    while (!code.empty()) {
        const std::string_view word = code.substr(0, code.find_first_of(kBetweenWords));
        const auto* const found = std::ranges::find(kOperatorsNoQuestionMayName, word);
        if (found != kOperatorsNoQuestionMayName.end()) {
            return *found;
        }
        code.remove_prefix(std::min(code.size(), word.size() + 1));
    }
    return {};
}

}  // namespace TkPPDUpdating
