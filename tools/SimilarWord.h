#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TkPPDUpdating {

/// The one of `words` that a mistyped `word` was most likely meant to be, the first of those
/// equally near; empty when none is near. Near is what a few mistakes of the hand lead to: a
/// character left out, added, replaced, or swapped with its neighbour, one for each three
/// characters of the word typed; upper case, "-" and "_" do not count. Nothing is near a word of
/// more than 64 bytes.
std::string similarWord(std::string_view word, const std::vector<std::string>& words);

/// "; did you mean \"WORD\"?" with the similar word, or nothing.
std::string questionForSimilarWord(std::string_view word, const std::vector<std::string>& words);

}  // namespace TkPPDUpdating
