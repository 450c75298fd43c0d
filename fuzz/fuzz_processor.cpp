// The PPD processor: edits and look-ups in any order. The input is a list of operations, one a line
// ("I keyword|spec|text|value", "D keyword|spec|value", "V keyword|spec", "L location", "C"), an
// empty line, and the PPD text.
#include <array>
#include <stdexcept>

#include "fuzz/FuzzTarget.h"
#include "ppd/OrbPPDProcessor.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

/// The text up to the separator, which is taken off with it.
std::string_view takenUpTo(std::string_view& text, std::string_view separator) {
    const std::size_t end = text.find(separator);
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
    return taken;
}

using Arguments = std::array<std::optional<std::string_view>, 4>;

/// An argument that is not there, or is "-", is null.
Arguments argumentsOf(std::string_view text) {
    Arguments arguments;
    for (auto& argument : arguments) {
        if (!text.empty()) {
            const std::string_view taken = takenUpTo(text, "|");
            argument = taken == "-" ? std::nullopt : std::optional(taken);
        }
    }
    return arguments;
}

void run(OrbPPDProcessor& processor, std::string_view operation) {
    const Arguments arguments = argumentsOf(operation.size() > 2 ? operation.substr(2) : "");
    const auto& [first, second, third, fourth] = arguments;
    switch (operation.empty() ? ' ' : operation.front()) {
        case 'I':
            processor.insertAttributeWithKeyword_spec_text_value_wrap(first, second, third, fourth,
                                                                      true);
            break;
        case 'i':
            processor.insertAttributeWithKeyword_spec_text_value_wrap(first, second, third, fourth,
                                                                      false);
            break;
        case 'D':
            processor.deleteAttributeWithKeyword_spec_value(first, second, third);
            break;
        case 'V':
            (void)processor.valueForAttributeWithKeyword_spec(first, second);
            break;
        case 'R':
            (void)processor.rangeOfAttributeWithKeyword_spec_value(first, second, third);
            break;
        case 'L':
            processor.setInsertLocation(first && first->size() < 5 ? first->size() * 3
                                                                   : std::size_t{1} << 40U);
            break;
        case 'C':
            (void)processor.content();
            break;
        default:
            break;
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text = textOfInput(data, size);
    std::string_view operations = takenUpTo(text, "\n\n");
    const auto processor = OrbPPDProcessor::processorWithPPDContent(makePPDText(std::string(text)));
    for (int count = 0; count < 200 && !operations.empty(); ++count) {
        try {
            run(*processor, takenUpTo(operations, "\n"));
        } catch (const std::out_of_range&) {
            // What a look-up does with an attribute that ends at its colon.
        }
    }
    require(processor->content() != nullptr, "a text that was given stays one");
    return 0;
}
