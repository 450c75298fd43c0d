#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// The code point that stands for `codePoint` where case is ignored: simple Unicode case folding
/// (Unicode CaseFolding.txt, statuses C and S). Independent of the process's locale.
char32_t simpleCaseFolding(char32_t codePoint);

/// When `text` begins with `prefix`, case ignored, the number of bytes of `text` that match it;
/// else `std::string_view::npos`. An empty prefix matches 0 bytes. A byte that is not valid UTF-8
/// matches only the same byte.
std::size_t lengthOfPrefixIgnoringCase(std::string_view text, std::string_view prefix);

/// The text with every character folded; a byte that is not valid UTF-8 stays.
std::string foldedCase(std::string_view text);

/// A hash that is equal for texts that are equal where case is ignored, character by character. It
/// is of this process (`SeededTextHash`): nobody can write texts that share one.
std::uint64_t hashIgnoringCase(std::string_view text, std::uint64_t context);

/// The same for a text that is read piece by piece, and whose beginnings are hashed, too.
class HashIgnoringCase {
  public:
    explicit HashIgnoringCase(std::uint64_t context) : hash_(context) {}

    /// Reads the next piece, which holds whole characters.
    void add(std::string_view text);

    /// The hash of all that was read.
    std::uint64_t value() const;

  private:
    std::uint64_t hash_;
    /// Read, but not hashed yet: an ASCII character is one byte, any other four.
    std::uint64_t word_ = 0;
    /// How many bytes were read in all.
    std::uint64_t count_ = 0;
};

}  // namespace TkPPDUpdating
