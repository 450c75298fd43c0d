#include "backends/snmp/SNMPOptionAnswers.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>
#include <variant>

namespace TkPPDUpdating {

namespace {

/// RFC 3416, section 3: values of "error-status".
enum ErrorStatus { noError = 0, noSuchName = 2 };

constexpr std::size_t kFewestNumbers = 2;
constexpr std::size_t kMostNumbers = 128;

bool isEncodable(const SNMPName& name) {
    constexpr std::uint32_t kLastRoot = 2;
    constexpr std::uint32_t kMostBelowOtherRoots = 39;
    return name.size() >= kFewestNumbers && name.size() <= kMostNumbers && name[0] <= kLastRoot &&
           (name[0] == kLastRoot || name[1] <= kMostBelowOtherRoots);
}

/// Without what fills a buffer of a fixed size, and without blanks around.
std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kAround("\0 \t\r\n", 5);
    const std::size_t begin = text.find_first_not_of(kAround);
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(kAround) - begin + 1);
}

/// What the object holds as a PPD writes it; nothing for a value of another syntax.
std::optional<std::string> textOf(const SNMPVariable& variable) {
    if (const auto* number = std::get_if<std::int64_t>(&variable.value)) {
        return std::to_string(*number);
    }
    const auto* text = std::get_if<std::string>(&variable.value);
    return text ? std::optional(std::string(trimmed(*text))) : std::nullopt;
}

}  // namespace

std::optional<SNMPName> SNMPNameOfIdentifier(std::string_view identifier) {
    identifier.remove_prefix(identifier.starts_with('.') ? 1 : 0);
    SNMPName name;
    const char* at = identifier.data();
    const char* const end = at + identifier.size();
    for (;;) {
        std::uint32_t number = 0;
        const auto [next, failure] = std::from_chars(at, end, number);
        if (failure != std::errc() || name.size() == kMostNumbers) {
            return std::nullopt;
        }
        name.push_back(number);
        if (next == end) {
            return isEncodable(name) ? std::optional(name) : std::nullopt;
        }
        if (*next != '.') {
            return std::nullopt;
        }
        at = next + 1;
    }
}

std::optional<std::string> choiceOfAnswer(const OrbCSObjectQuestion& question, const SNMPName& name,
                                          const SNMPAnswer& answer, std::string& reason) {
    const bool isThere = answer.variables.size() == 1 && !answer.variables.front().isEnd;
    if (answer.errorStatus == noSuchName || (answer.errorStatus == noError && !isThere)) {
        reason = "the printer has no such object";
        return std::nullopt;
    }
    if (answer.errorStatus != noError) {
        reason = "the printer answers with an error";
        return std::nullopt;
    }
    const SNMPVariable& variable = answer.variables.front();
    const auto text = variable.name == name ? textOf(variable) : std::nullopt;
    const auto choice = text ? question.choices.find(*text) : question.choices.end();
    if (choice != question.choices.end()) {
        return choice->second;
    }
    if (text && !question.choiceForOthers.empty()) {
        return question.choiceForOthers;
    }
    reason = "the answer is none of those that the PPD names";
    return std::nullopt;
}

}  // namespace TkPPDUpdating
