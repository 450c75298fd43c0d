#include "tools/SimilarWord.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "text/ASCII.h"

namespace TkPPDUpdating {

namespace {

constexpr std::size_t kLongestWord = 64;
constexpr std::size_t kCharactersForAMistake = 3;

std::string compared(std::string_view word) {
    std::string lower = textInASCIILowerCase(word);
    std::erase_if(lower, [](char character) { return character == '-' || character == '_'; });
    return lower;
}

/// How many characters must be left out, added, replaced or swapped with their neighbour to turn
/// the one into the other (optimal string alignment).
std::size_t distanceBetween(std::string_view from, std::string_view to) {
    std::vector<std::size_t> beforeLast(to.size() + 1);
    std::vector<std::size_t> last(to.size() + 1);
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t column = 0; column <= to.size(); ++column) {
        last[column] = column;
    }
    for (std::size_t line = 1; line <= from.size(); ++line) {
        row[0] = line;
        for (std::size_t column = 1; column <= to.size(); ++column) {
            const std::size_t replaced =
                last[column - 1] + (from[line - 1] == to[column - 1] ? 0 : 1);
            row[column] = std::min({last[column] + 1, row[column - 1] + 1, replaced});
            if (line > 1 && column > 1 && from[line - 1] == to[column - 2] &&
                from[line - 2] == to[column - 1]) {
                row[column] = std::min(row[column], beforeLast[column - 2] + 1);
            }
        }
        beforeLast.swap(last);
        last.swap(row);
    }
    return last[to.size()];
}

}  // namespace

std::string similarWord(std::string_view word, const std::vector<std::string>& words) {
    const std::string typed = compared(word);
    if (typed.empty() || word.size() > kLongestWord) {
        return {};
    }
    std::size_t nearest = std::numeric_limits<std::size_t>::max();
    std::string similar;
    for (const std::string& each : words) {
        const std::string known = compared(each);
        if (known.size() > kLongestWord) {
            continue;
        }
        const std::size_t distance = distanceBetween(typed, known);
        if (distance <= typed.size() / kCharactersForAMistake && distance < nearest) {
            nearest = distance;
            similar = each;
        }
    }
    return similar;
}

std::string questionForSimilarWord(std::string_view word, const std::vector<std::string>& words) {
    const std::string similar = similarWord(word, words);
    return similar.empty() ? similar : "; did you mean \"" + similar + "\"?";
}

}  // namespace TkPPDUpdating
