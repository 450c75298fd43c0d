// The strings-file reader: any text is read or refused, and what was read is written so that it
// reads back as the same, as far as the written form is unambiguous.
#include <algorithm>

#include "fuzz/FuzzTarget.h"
#include "ppd/StringsFileFormat.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr std::string_view kLineSeparator = "\xE2\x80\xA8";
constexpr std::string_view kParagraphSeparator = "\xE2\x80\xA9";

bool touchesBlank(std::string_view text) {
    const auto isAt = [&](std::string_view blank) {
        return text.starts_with(blank) || text.ends_with(blank);
    };
    return kBlanks.find(text.front()) != std::string_view::npos ||
           kBlanks.find(text.back()) != std::string_view::npos || isAt(kLineSeparator) ||
           isAt(kParagraphSeparator);
}

/// What the written form, which quotes nothing, can hold (`ppd/StringsFileFormat.h`).
bool isUnambiguous(std::string_view text) {
    return text.empty() || !(text.starts_with('"') || touchesBlank(text) || text.ends_with("*/") ||
                             text.find(';') != std::string_view::npos);
}

bool isUnambiguousPair(const StringsDictionary::value_type& entry) {
    const std::string_view key = entry.first;
    return isUnambiguous(key) && isUnambiguous(entry.second) &&
           key.find('=') == std::string_view::npos && !key.starts_with("//") &&
           !key.starts_with("/*");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto dictionary = propertyListFromStringsFileFormat(textOfInput(data, size));
    if (!dictionary) {
        return 0;
    }
    const std::string written = zrlumen_keysAndValuesInPPDStringsFileFormat(*dictionary);
    const auto again = propertyListFromStringsFileFormat(written);
    const bool comesBack = std::all_of(dictionary->begin(), dictionary->end(), isUnambiguousPair);
    require(!comesBack || again == dictionary, "pairs read back as they were written");
    return 0;
}
