#pragma once

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "ppd/PPDTextFile.h"
#include "tests/updaters/capabilities/CapabilitiesTestSupport.h"
#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"
#include "updaters/capabilities/OrbPPDNonInstallableDuplexUpdater.h"

/// The sample PPDs after a run of the capability updaters.
namespace TkPPDUpdating::Testing {

struct DeviceAnswer {
    const char* name;
    std::optional<bool> isInstalled;
};

inline constexpr DeviceAnswer kDeviceAnswers[] = {
    {"installed", true}, {"not installed", false}, {"silent", std::nullopt}};

inline std::string samplePath(std::string_view name) {
    return std::string(TKPPDUPDATING_SOURCE_DIR "/samples/ppd/").append(name);
}

/// The paths of all samples, sorted.
inline std::vector<std::string> samplePaths() {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(samplePath(""))) {
        if (entry.path().extension() == ".ppd") {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// The text after those of the two updaters that apply to it have asked a device with that answer;
/// the text itself when none applies or changes it.
inline PPDText updatedSample(const PPDText& text, const DeviceAnswer& answer) {
    const auto device = DeviceScope::withDuplexer(answer.isInstalled);
    const auto file = PPDModelFile::fileWithText(text);
    OrbPPDDeviceCapabilitiesUpdater deviceCapabilities;
    OrbPPDNonInstallableDuplexUpdater nonInstallable;
    OrbDictionary context;
    PPDText result = text;
    for (ITkPPDUpdater* const updater : {static_cast<ITkPPDUpdater*>(&deviceCapabilities),
                                         static_cast<ITkPPDUpdater*>(&nonInstallable)}) {
        if (updater->isApplicableForPPDFile(file.get())) {
            const PPDText updated =
                updater->updatedPPDContentsForContents_deviceURI_context(result, "test:", &context);
            result = updated ? updated : result;
        }
    }
    return result;
}

}  // namespace TkPPDUpdating::Testing
