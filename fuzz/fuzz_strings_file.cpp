// The strings-file reader: any text is read or refused, and plain keys and values read back as they
// were written.
#include <algorithm>

#include "fuzz/FuzzTarget.h"
#include "ppd/StringsFileFormat.h"
#include "text/ASCII.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

bool isPlain(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char character) {
        return isASCIILetterOrDigit(character);
    });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto dictionary = propertyListFromStringsFileFormat(textOfInput(data, size));
    if (!dictionary) {
        return 0;
    }
    const std::string written = zrlumen_keysAndValuesInPPDStringsFileFormat(*dictionary);
    const auto again = propertyListFromStringsFileFormat(written);
    const bool isAllPlain = std::all_of(
        dictionary->begin(), dictionary->end(),
        [](const auto& entry) { return isPlain(entry.first) && isPlain(entry.second); });
    require(!isAllPlain || again == dictionary, "plain pairs read back as they were written");
    return 0;
}
