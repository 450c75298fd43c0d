// The parsed PPD model: any text is parsed or refused with a reason, and every name that the model
// tells can be looked up.
#include "backends/ppdmodel/PPDModelFile.h"
#include "fuzz/FuzzTarget.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string reason;
    const auto file =
        PPDModelFile::fileWithText(makePPDText(std::string(textOfInput(data, size))), &reason);
    if (!file) {
        require(!reason.empty() && reason.find('\n') == std::string::npos, "one line of reason");
        return 0;
    }
    std::size_t valueBytes = 0;
    for (const std::string_view keyword : file->mainKeywords()) {
        const auto attributes = file->attributesForName(keyword);
        require(!attributes.empty(), "a main keyword has an attribute");
        for (const OrbPPDAttribute* attribute : attributes) {
            valueBytes += attribute->value().value_or("").size();
        }
        (void)file->attributesForName_spec(keyword, "Letter");
        (void)file->pageSizeForName(keyword);
    }
    require(valueBytes <= size, "values are parts of the text");
    for (const std::string_view name : file->optionNames()) {
        const OrbPPDOption* option = file->optionForName(name);
        require(option, "an option that is listed can be found");
        (void)option->choiceForName(option->defaultChoiceName().value_or(""));
    }
    return 0;
}
