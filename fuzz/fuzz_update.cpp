// A whole update: a printer's recorded status, a line "====", and a PPD. However hostile both are,
// the result is UTF-8 and holds no line that lets the scheduler run something which was not there,
// and what changed can be told.
#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/ppdmodel/PPDModelFile.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "core_interface/OrbCoreInterface.h"
#include "fuzz/FuzzTarget.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "sync/ChangeDescription.h"
#include "text/UTF8.h"

using namespace TkPPDUpdating;
using namespace TkPPDUpdating::Fuzzing;

namespace {

constexpr std::string_view kSeparator = "\n====\n";
constexpr std::array<std::string_view, 5> kDangerousKeywords = {
    "*cupsFilter", "*cupsPreFilter", "*cupsPortMonitor", "*APPrinterPreset", "*FoomaticRIP"};

/// How many lines begin with one of them.
std::size_t dangerousLines(std::string_view text) {
    std::size_t count = 0;
    while (!text.empty()) {
        for (const std::string_view keyword : kDangerousKeywords) {
            count += text.starts_with(keyword) ? 1 : 0;
        }
        const std::size_t end = text.find('\n');
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return count;
}

PPDText updated(PPDText text, const OrbPPDFile& file, OrbDictionary& context) {
    const OrbPPDConcreteUpdatingManager manager;
    for (const auto& updater : manager.applicableUpdatersForPPDFile(&file)) {
        if (PPDText next =
                updater->updatedPPDContentsForContents_deviceURI_context(text, "file:", &context)) {
            text = std::move(next);
        }
        (void)updater->PPDUpdatingValuesForPPDFile_deviceURI_context(&file, "file:", &context);
    }
    return text;
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
        require(!firstInvalidUTF8Byte(line), "what is told is UTF-8");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = textOfInput(data, size);
    const std::size_t separator = input.find(kSeparator);
    if (separator == std::string_view::npos) {
        return 0;
    }
    std::string reason;
    const auto status = RecordedDeviceStatus::statusWithJSON(input.substr(0, separator), reason);
    const PPDText text = makePPDText(std::string(input.substr(separator + kSeparator.size())));
    const auto file = PPDModelFile::fileWithText(text);
    if (!status || !file) {
        return 0;
    }
    OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
    OrbDictionary context =
        OrbPPDUpdatingContext::contextWithDeviceStatus_parameters(status, nullptr);
    try {
        const PPDText result = updated(text, *file, context);
        require(result != nullptr, "a text stays a text");
        require(!firstInvalidUTF8Byte(*result), "the result is UTF-8");
        require(dangerousLines(*result) <= dangerousLines(*text), "nothing dangerous is added");
        requireThatChangesAreTold(*file, result);
    } catch (const std::out_of_range&) {
        // How an operation ends at an attribute that has nothing after its colon.
    }
    return 0;
}
