// What is written into a file or installed on a queue: a printer's recorded status, a line "====",
// and a PPD. What was not told stays, defaults keep their meaning, what the guard lets pass is
// harmless as libcups reads it, and what changed is told.
#include <stdexcept>
#include <string>
#include <utility>

#include "fuzz/UpdateInput.h"
#include "sync/ChangeDescription.h"
#include "sync/PPDUpdate.h"
#include "sync/UpdateGuard.h"
#include "tests/hostile/UpdateInvariants.h"
#include "text/UTF8.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

bool isOneLine(const std::string& text) {
    return !firstInvalidUTF8Byte(text) && text.find('\n') == std::string::npos;
}

/// What changed is told where the texts differ, in valid UTF-8, and equal texts have no changes.
void requireThatChangesAreTold(const PPDModelFile& before, const PPDText& result) {
    const auto after = PPDModelFile::fileWithText(result);
    if (!after) {
        return;
    }
    const auto changes = PPDChangesBetween(before, *after);
    const auto lines = describedChanges(before, *after, changes, {"de", "en"});
    require((*result == *before.text()) == lines.empty(), "what changed is told");
    for (const std::string& line : lines) {
        // Control characters of the PPD are shown by who shows the line.
        require(!firstInvalidUTF8Byte(line), "what is told is UTF-8");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = textOfInput(data, size);
    const auto status = takenStatus(input);
    const ParsedPPD PPD = takenPPD(input);
    if (!status || !*status || !PPD) {
        return 0;
    }
    setTheSameWorld(std::make_shared<const PPDModelCore>());
    PPDUpdate update(std::make_unique<OrbPPDConcreteUpdatingManager>(), PPD);
    PPDText result;
    try {
        update.setStatus(*status, PPDUpdate::Rule::whatWasNotToldStays);
        result = update.updatedText("file:");
    } catch (const std::out_of_range&) {
        return 0;  // How an operation ends at an attribute that has nothing after its colon.
    }
    require(result != nullptr, "a text stays a text");
    require(!firstInvalidUTF8Byte(*result), "the result is UTF-8");
    const auto kept = PPDUpdate::wordsForKeptEntries(update.keptEntries());
    require(isOneLine(kept), "what was kept is told in a line");
    for (const std::string& note : update.notes()) {
        require(isOneLine(note), "a note is a line");
    }
    requireThatChangesAreTold(*PPD, result);
    const auto refusal = UpdateGuard::reasonNotToWrite(
        *PPD->text(), *result, update.manager().applicableUpdatersForPPDFile(PPD.get()));
    if (refusal) {
        require(isOneLine(*refusal), "a reason is a line");
        return 0;
    }
    requireNone(Testing::UpdateInvariants(*PPD->text()).findingsIn(*result),
                "what the guard lets pass is harmless");
    return 0;
}
