#include "updaters/capabilities/RequiredText.h"

#include <cctype>
#include <cstddef>

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kNoEnd = std::string_view::npos;

bool isWordCharacter(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0;
}

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

/// How often what stands before may be there, read from `at` on.
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
                return {kNoEnd, true};
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

}  // namespace

std::string requiredTextOfExpression(std::string_view expression) {
    std::string longest;
    std::string run;
    const auto endRun = [&] {
        longest = run.size() > longest.size() ? run : longest;
        run.clear();
    };
    for (std::size_t at = 0; at < expression.size();) {
        char character = expression[at];
        std::size_t next = at + 1;
        bool isPlain = false;
        switch (character) {
            case '|':
            case ')':
                return {};
            case '[':
                next = afterBrackets(expression, at);
                break;
            case '(':
                next = afterGroup(expression, at);
                break;
            case '\\':
                // Before a letter or digit, or one of these, it means something of its own.
                character = next < expression.size() ? expression[next] : '\0';
                isPlain = !isWordCharacter(character) &&
                          std::string_view("<>`'").find(character) == kNoEnd;
                ++next;
                break;
            default:
                isPlain = std::string_view("^$.*?+{").find(character) == kNoEnd;
        }
        const Repetition repetition =
            next == kNoEnd ? Repetition{kNoEnd} : repetitionAt(expression, next);
        if (repetition.end == kNoEnd) {
            return {};
        }
        if (isPlain && !repetition.mayBeMissing) {
            run += character;
        }
        if (!isPlain || repetition.end != next) {
            endRun();
        }
        at = repetition.end;
    }
    endRun();
    return longest;
}

}  // namespace TkPPDUpdating
