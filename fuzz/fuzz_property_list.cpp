// The property list reader: any text is read or refused with a reason.
#include "fuzz/FuzzTarget.h"
#include "resources/PropertyListReader.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOfInput(data, size);
    std::string reason;
    const auto list = PropertyListReader::propertyListWithText(text, &reason);
    if (!list) {
        require(!reason.empty(), "a refused text has a reason");
        return 0;
    }
    require(PropertyListReader::propertyListWithText(text) == list, "reading gives one value");
    return 0;
}
