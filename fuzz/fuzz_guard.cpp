// The guard before writing: whatever it lets pass, libcups reads as harmless, and no line is lost
// or new that no updater owns. The input is a list of edits that make the text after of the text
// before, one a line, an empty line, and the text before:
//
//   N number|line   insert a line     E number        erase a line
//   S number|line   replace a line    M number|number move a line
#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/UpdateInput.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "sync/UpdateGuard.h"
#include "tests/hostile/UpdateInvariants.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        lines.emplace_back(takenLine(text));
    }
    return lines;
}

/// libcups passes over an empty line that is not the first, and so does the guard: what is done
/// with one tells nothing.
bool isBlank(const std::string& line) {
    return line.find_first_not_of(" \t\v\f\r") == std::string::npos;
}

/// The line; what it ends with in front of its line feed tells nothing, either.
std::string lineOf(const Operation& operation) {
    const std::string_view line = operation.arguments[1].value_or("");
    return std::string(line.substr(0, line.find_last_not_of('\r') + 1));
}

void edit(Lines& lines, const Operation& operation) {
    const std::size_t number = numberIn(operation.arguments[0]);
    const std::string line = lineOf(operation);
    if (operation.letter == 'N') {
        const auto place = number % (lines.size() + 1);
        if (isBlank(line) && place > 0) {
            return;
        }
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), line);
    } else if (!lines.empty()) {
        const auto place = lines.begin() + static_cast<std::ptrdiff_t>(number % lines.size());
        const auto other = numberIn(operation.arguments[1]) % lines.size();
        if (isBlank(*place)) {
            return;
        }
        switch (operation.letter) {
            case 'E':
                lines.erase(place);
                break;
            case 'S':
                *place = line;
                break;
            case 'M': {
                const auto target = lines.begin() + static_cast<std::ptrdiff_t>(other);
                if (std::any_of(std::min(place, target), std::max(place, target) + 1, isBlank)) {
                    return;
                }
                const std::string moved = *place;
                lines.erase(place);
                lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(other), moved);
                break;
            }
            default:
                break;
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMostEdits = 30;
    std::string_view input = textOfInput(data, size);
    const std::string_view edits = takenUpTo(input, "\n\n");
    const ParsedPPD before = PPDModelFile::fileWithText(makePPDText(std::string(input)));
    if (!before) {
        return 0;
    }
    Lines lines = linesOf(*before->text());
    forEachOperation(edits, kMostEdits,
                     [&](const Operation& operation) { edit(lines, operation); });
    std::string after;
    for (const std::string& line : lines) {
        after += line + "\n";
    }
    setTheSameWorld(std::make_shared<const PPDModelCore>());
    static const OrbPPDConcreteUpdatingManager kManager;
    const auto refusal = UpdateGuard::reasonNotToWrite(
        *before->text(), after, kManager.applicableUpdatersForPPDFile(before.get()));
    if (!refusal) {
        requireNone(Testing::UpdateInvariants(*before->text()).findingsIn(after),
                    "what the guard lets pass is harmless");
    }
    return 0;
}
