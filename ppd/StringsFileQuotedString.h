#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// Reads one quoted string of a strings file, from behind its opening quote;
/// `propertyListFromStringsFileFormat` says which escapes may stand in it.
class StringsFileQuotedString {
  public:
    explicit StringsFileQuotedString(std::string_view text) : text_(text) {}

    /// The string without its escapes; nothing when it is malformed or not closed. To be called
    /// once.
    std::optional<std::string> read();

    /// How many bytes were read, the closing quote included.
    std::size_t length() const { return at_; }

  private:
    /// Reads what follows a backslash.
    bool readEscape(std::string& string);
    bool readOctal(std::string& string);
    /// The unit written in four hexadecimal digits.
    std::optional<char32_t> readUnit();
    /// Reads a character from one unit, or from the two units of a surrogate pair.
    bool readUTF16(std::string& string);

    std::string_view text_;
    std::size_t at_ = 0;
};

}  // namespace TkPPDUpdating
