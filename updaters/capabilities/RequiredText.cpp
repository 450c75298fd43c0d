#include "updaters/capabilities/RequiredText.h"

#include <cstddef>
#include <optional>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kNoEnd = std::string_view::npos;

/// Behind the bracket expression that opens at `at`; no end when it is not closed.
std::size_t afterBrackets(std::string_view expression, std::size_t at) {
    ++at;
    at += expression.substr(at).starts_with('^') ? 1 : 0;
    at += expression.substr(at).starts_with(']') ? 1 : 0;
    while (at < expression.size() && expression[at] != ']') {
        const std::string_view rest = expression.substr(at);
        if (rest.starts_with("[:") || rest.starts_with("[.") || rest.starts_with("[=")) {
            const std::size_t close = expression.find(std::string{rest[1], ']'}, at + 2);
            if (close == kNoEnd) {
                return kNoEnd;
            }
            at = close + 2;
        } else {
            ++at;
        }
    }
    return at < expression.size() ? at + 1 : kNoEnd;
}

/// Behind the group that opens at `at`; no end when it is not closed.
std::size_t afterGroup(std::string_view expression, std::size_t at) {
    std::size_t depth = 0;
    while (at < expression.size()) {
        const char character = expression[at];
        if (character == '[') {
            at = afterBrackets(expression, at);
            continue;
        }
        at += character == '\\' ? 2 : 1;
        depth += character == '(' ? 1 : 0;
        if (character == ')' && --depth == 0) {
            return at;
        }
    }
    return kNoEnd;
}

/// How often what stands before may be there, read from `at` on; no end when that is none or a
/// bound is not closed.
struct Repetition {
    std::size_t end = 0;
    bool mayBeMissing = false;
};

Repetition repetitionAt(std::string_view expression, std::size_t at) {
    Repetition repetition{at};
    for (; at < expression.size(); repetition.end = at) {
        const char character = expression[at];
        if (character == '{') {
            const std::size_t close = expression.find('}', at);
            const std::string_view bounds = expression.substr(at + 1, close - at - 1);
            if (close == kNoEnd || bounds.find_first_not_of("0123456789,") != kNoEnd) {
                return {kNoEnd};
            }
            at = close + 1;
        } else if (character == '*' || character == '?' || character == '+') {
            ++at;
        } else {
            break;
        }
        repetition.mayBeMissing = repetition.mayBeMissing || character != '+';
    }
    return repetition;
}

/// One thing that an expression is made of.
struct Item {
    /// Behind it; no end when the expression is not understood.
    std::size_t end = kNoEnd;
    /// The character, when it stands for itself.
    std::optional<char> plain;
};

bool isOneOf(char character, std::string_view characters) {
    return characters.find(character) != kNoEnd;
}

Item itemAt(std::string_view expression, std::size_t at) {
    const auto plainIf = [](char character, bool isPlain) {
        return isPlain ? std::optional(character) : std::nullopt;
    };
    const char character = expression[at];
    switch (character) {
        case '|':
        case ')':
            return {};
        case '[':
            return {afterBrackets(expression, at), {}};
        case '(':
            return {afterGroup(expression, at), {}};
        case '\\': {
            if (at + 1 == expression.size()) {
                return {};
            }
            // Before a letter or digit, or one of these, it means something of its own.
            const char next = expression[at + 1];
            return {at + 2, plainIf(next, !isASCIILetterOrDigit(next) && !isOneOf(next, "<>`'"))};
        }
        default:
            return {at + 1, plainIf(character, !isOneOf(character, "^$.*?+{"))};
    }
}

}  // namespace

std::string requiredTextOfExpression(std::string_view expression) {
    std::string longest;
    std::string run;
    const auto endRun = [&] {
        longest = run.size() > longest.size() ? run : longest;
        run.clear();
    };
    for (std::size_t at = 0; at < expression.size();) {
        const Item item = itemAt(expression, at);
        const Repetition repetition = repetitionAt(expression, item.end);
        if (repetition.end == kNoEnd) {
            return {};
        }
        if (item.plain && !repetition.mayBeMissing) {
            run += *item.plain;
        }
        if (!item.plain || repetition.end != item.end) {
            endRun();
        }
        at = repetition.end;
    }
    endRun();
    return longest;
}

}  // namespace TkPPDUpdating
