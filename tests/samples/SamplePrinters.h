#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/recorded/RecordedDeviceStatus.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "core_interface/OrbCoreInterface.h"
#include "ppd/PPDTextFile.h"
#include "tests/support/TestDoubles.h"

/// The sample printers, as the tests reach them.
namespace TkPPDUpdating::Testing {

inline const std::string kSamplesFolder = TKPPDUPDATING_SOURCE_DIR "/samples";

inline const std::vector<std::string>& samplePrinters() {
    static const std::vector<std::string> printers = {"zr-compact", "zr-inkjet", "zr-office"};
    return printers;
}

/// The states of each printer that are recorded.
inline const std::map<std::string, std::vector<std::string>>& sampleStates() {
    static const std::map<std::string, std::vector<std::string>> states = {
        {"zr-compact", {"all", "none", "silent"}},
        {"zr-inkjet", {"all", "calibrated", "none", "silent", "uncalibrated"}},
        {"zr-office", {"all", "none", "silent"}}};
    return states;
}

inline std::string PPDPathOf(const std::string& printer) {
    return kSamplesFolder + "/ppd/" + printer + ".ppd";
}

inline std::string recordingPathOf(const std::string& printer, const std::string& state) {
    return kSamplesFolder + "/status/" + printer + "-" + state + ".json";
}

/// The bytes of a file, which must be UTF-8; empty when it cannot be read.
inline std::string textOfFile(const std::string& path) {
    const PPDText text = PPDTextWithContentsOfFile(path);
    return text ? *text : std::string();
}

/// Puts behind the interface, for the length of a scope, what reads the samples and their
/// recordings, a user of one locale and an update time that stands still.
class SampleWorld {
  public:
    explicit SampleWorld(const char* locale = "de_DE") {
        const auto schemes = std::make_shared<DeviceStatusSchemes>();
        registerRecordedDeviceStatus(*schemes);
        OrbCoreInterface::setCore(std::make_shared<PPDModelCore>());
        OrbCoreInterface::setCommunicationServices(schemes);
        OrbCoreInterface::setEnvironment(
            std::make_shared<FakeEnvironment>(std::map<std::string, std::string>{
                {"ZrCurrentLocaleIdentifier", locale}, {"ZrEPRLastUpdateTime", "252532800"}}));
    }

  private:
    CoreInterfaceScope scope_;
};

}  // namespace TkPPDUpdating::Testing
