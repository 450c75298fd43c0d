// What an absent duplexer takes out of a PPD: a group, the constraints of an option, page sizes.
// Each removal, one after the other, gives what its rule says word by word. The input is a list of
// operations, one a line ("G group", "C option", "P", "E number" for an expression), an empty line,
// and the text.
#include <array>
#include <string>

#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzTarget.h"
#include "tests/updaters/capabilities/ConstraintRemovalModel.h"
#include "tests/updaters/capabilities/LineRemovalModels.h"
#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"
#include "updaters/capabilities/OrbPPDNonInstallableDuplexUpdater.h"
#include "updaters/capabilities/PosixRegularExpression.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;
using namespace TkPPDUpdating::Testing;

namespace {

/// Ours and others, with and without a text that every match holds.
constexpr std::array<const char*, 8> kExpressions = {
    "^\\*PageSize [^/:]+\\.ZrDuplex[/:]",
    "^$",
    "ab*c",
    "(a|b)cd",
    "^\\*[A-Z]+:",
    "x{2}y?z",
    "[[:blank:]]+$",
    "\\.\\*",
};

PPDText removed(const PPDText& text, const Operation& operation, std::string& expected) {
    const std::string name(operation.arguments[0].value_or("Duplex"));
    switch (operation.letter) {
        case 'G':
            expected = withoutGroup(expected, name);
            return OrbPPDDeviceCapabilitiesUpdater::contentsForContents_byRemovingGroupWithName(
                text, name);
        case 'C':
            if (name.find(':') != std::string::npos) {
                return text;  // No keyword has one.
            }
            expected = ConstraintRemovalModel::removed(expected, name);
            return OrbPPDDeviceCapabilitiesUpdater::
                contentsForContents_byRemovingConstraintsForOptionWithName(text, name);
        case 'P': {
            const OrbPPDNonInstallableDuplexUpdater updater;
            require(updater.duplexSafeRegularExpression().has_value(), "there is an expression");
            expected = withoutMatchingLines(expected, *updater.duplexSafeRegularExpression());
            return updater.contentsByRemovingDuplexSafePageSizesForContents(text);
        }
        case 'E': {
            const char* const expression =
                kExpressions[numberIn(operation.arguments[0]) % kExpressions.size()];
            expected = withoutMatchingLines(expected, expression);
            return PosixRegularExpression::compiled(expression)->textByRemovingMatchingLines(text);
        }
        default:
            return text;
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostOperations = 8;
    std::string_view input = textOfInput(data, size);
    if (input.find('\0') != std::string_view::npos) {
        return 0;
    }
    const std::string_view operations = takenUpTo(input, "\n\n");
    std::string expected(input);
    PPDText text = makePPDText(expected);
    forEachOperation(operations, kMostOperations, [&](const Operation& operation) {
        const std::string before = expected;
        const PPDText next = removed(text, operation, expected);
        require(expected != before || *next == *text, "what has nothing to go stays");
        text = next;
    });
    require(*text == expected, "what is left is what the rules leave");
    return 0;
}
