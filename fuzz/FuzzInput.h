#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

/// How an input is split into what a target needs. Inputs are texts, so that people can write and
/// read them and dictionaries fit.
namespace TkPPDUpdating::Fuzzing {

/// The text up to the separator, which is taken off with it; all of it when there is none.
inline std::string_view takenUpTo(std::string_view& text, std::string_view separator) {
    const std::size_t end = text.find(separator);
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
    return taken;
}

/// The next of several texts, between which a line "====" stands.
inline std::string_view takenPart(std::string_view& text) {
    return takenUpTo(text, "\n====\n");
}

inline std::string_view takenLine(std::string_view& text) {
    return takenUpTo(text, "\n");
}

/// A letter that says what to do, a blank, and up to four arguments between "|".
struct Operation {
    using Argument = std::optional<std::string_view>;

    char letter = ' ';
    /// One that is missing, or is "-", is null.
    std::array<Argument, 4> arguments;
};

inline Operation operationOfLine(std::string_view line) {
    Operation operation;
    operation.letter = line.empty() ? ' ' : line.front();
    std::string_view rest = line.size() > 2 ? line.substr(2) : std::string_view();
    for (auto& argument : operation.arguments) {
        if (!rest.empty()) {
            const std::string_view taken = takenUpTo(rest, "|");
            argument = taken == "-" ? std::nullopt : std::optional(taken);
        }
    }
    return operation;
}

/// The decimal number at the start of an argument, which is less than 10,000; 0 when there is none.
inline std::size_t numberIn(Operation::Argument argument) {
    std::size_t number = 0;
    for (const char digit : argument.value_or("").substr(0, 4)) {
        if (digit < '0' || digit > '9') {
            break;
        }
        number = number * 10 + static_cast<std::size_t>(digit - '0');
    }
    return number;
}

/// Calls `run(operation)` for the first `most` of the operations, which stand one a line.
template <typename Run>
void forEachOperation(std::string_view operations, std::size_t most, const Run& run) {
    for (std::size_t count = 0; count < most && !operations.empty(); ++count) {
        run(operationOfLine(takenLine(operations)));
    }
}

}  // namespace TkPPDUpdating::Fuzzing
