#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "backends/ppdmodel/PPDModelFile.h"
#include "core_interface/OrbCoreInterface.h"
#include "manager/OrbPPDUpdatingContext.h"
#include "tests/support/TestDoubles.h"
#include "updaters/attributes/OrbPPDAttributesUpdater.h"

/// Short forms of what the tests of the attribute updaters do again and again.
namespace TkPPDUpdating::Testing {

inline constexpr std::string_view kAnyURI = "ipp://printer.example/ipp/print";

/// A PPD of those lines after the line that makes it one; each line ends with a line feed.
inline std::string ppdOfLines(std::initializer_list<std::string_view> lines) {
    std::string text = "*PPD-Adobe: \"4.3\"\n";
    for (const std::string_view line : lines) {
        text.append(line).append("\n");
    }
    return text;
}

inline std::shared_ptr<const PPDModelFile> parsedPPD(std::string text) {
    return PPDModelFile::fileWithText(makePPDText(std::move(text)));
}

inline std::shared_ptr<const OrbCSDeviceStatus> statusWith(std::string_view key,
                                                           OrbCSStatusValue value) {
    return std::make_shared<FakeDeviceStatus>(
        FakeDeviceStatus::Values{{std::string(key), std::move(value)}});
}

inline std::shared_ptr<const OrbCSDeviceStatus> statusWithoutValues() {
    return std::make_shared<FakeDeviceStatus>();
}

/// The values that the updater takes from that status; null stands for a silent device.
inline std::optional<OrbPPDUpdatingValues> valuesFrom(
    OrbPPDAttributesUpdater& updater, std::shared_ptr<const OrbCSDeviceStatus> status) {
    const CoreInterfaceScope scope;
    OrbCoreInterface::setCommunicationServices(
        std::make_shared<FakeCommunicationServices>(std::move(status)));
    OrbDictionary context;
    return updater.attributesFromDeviceWithURI_context(kAnyURI, &context);
}

/// The text after the updater has written what that status says; null stands for a silent device.
inline std::string textUpdatedFrom(OrbPPDAttributesUpdater& updater, std::string text,
                                   std::shared_ptr<const OrbCSDeviceStatus> status) {
    const CoreInterfaceScope scope;
    OrbCoreInterface::setCommunicationServices(
        std::make_shared<FakeCommunicationServices>(std::move(status)));
    OrbDictionary context;
    return *updater.updatedPPDContentsForContents_deviceURI_context(makePPDText(std::move(text)),
                                                                    kAnyURI, &context);
}

}  // namespace TkPPDUpdating::Testing
