#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core_interface/OrbCoreInterface.h"
#include "core_interface/TkCSKeys.h"
#include "ppd/PPDStatements.h"
#include "ppd/PPDText.h"
#include "resources/ResourceFolder.h"
#include "tests/support/ParsedPPD.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TestDoubles.h"

/// Stand-ins that the tests of the capability updaters share.
namespace TkPPDUpdating::Testing {

/// Makes a folder of the test's own the library's data folder, until the end of the scope.
class ResourceScope {
  public:
    /// The folder is empty: the property list is missing.
    ResourceScope() { ResourceFolder::setPath(directory_.path().string()); }
    /// The property list is that text, which need not be one.
    explicit ResourceScope(std::string_view text) : ResourceScope() { setPropertyList(text); }
    ResourceScope(const ResourceScope&) = delete;
    ResourceScope& operator=(const ResourceScope&) = delete;
    ~ResourceScope() { ResourceFolder::setPath(std::nullopt); }

    void setPropertyList(std::string_view text) const {
        directory_.write("TkPPDUpdatingData.plist", text);
    }

  private:
    TemporaryDirectory directory_;
};

/// A property list that is a dictionary of what `entries` writes.
inline std::string propertyListOf(std::string_view entries) {
    return "<plist version=\"1.0\"><dict>" + std::string(entries) + "</dict></plist>";
}

/// One entry for `propertyListOf`; the text is written as it is.
inline std::string textEntry(std::string_view key, std::string_view text) {
    return "<key>" + std::string(key) + "</key><string>" + std::string(text) + "</string>";
}

inline PPDText textOf(std::string_view text) {
    return makePPDText(std::string(text));
}

/// The statements of the text that may be taken away or added.
inline std::vector<std::string> linesThat(const std::function<bool(const PPDStatement&)>& may,
                                          std::string_view text) {
    std::vector<std::string> lines;
    for (const PPDStatement& each : PPDStatementsOfText(text)) {
        if (may(each)) {
            lines.emplace_back(each.lines);
        }
    }
    return lines;
}

/// The text after a run of a fresh updater with what the device says.
template <typename Updater>
PPDText updatedFromDevice(std::string_view text) {
    OrbDictionary context;
    return Updater().updatedPPDContentsForContents_deviceURI_context(textOf(text),
                                                                     "test:", &context);
}

/// The text after a run of a fresh updater with what another PPD of those lines says.
template <typename Updater>
PPDText updatedFromPPD(const PPDText& text, std::string_view lines) {
    OrbDictionary context;
    return Updater().updatedPPDContentsForContents_PPDFile_context(text, parsedPPD(lines).get(),
                                                                   &context);
}

/// Every device has that status, or none, until the end of the scope.
class DeviceScope {
  public:
    explicit DeviceScope(std::shared_ptr<const OrbCSDeviceStatus> status) {
        OrbCoreInterface::setCommunicationServices(
            std::make_shared<FakeCommunicationServices>(std::move(status)));
    }
    explicit DeviceScope(OrbCSDeviceAccessories accessories)
        : DeviceScope(std::make_shared<FakeDeviceStatus>(FakeDeviceStatus::Values{
              {std::string(kTkCSDeviceAccessoriesKey), std::move(accessories)}})) {}

    /// A device that tells of a duplexer, or one that says nothing.
    static DeviceScope withDuplexer(std::optional<bool> isInstalled) {
        if (!isInstalled) {
            return DeviceScope(std::shared_ptr<const OrbCSDeviceStatus>());
        }
        return DeviceScope(
            OrbCSDeviceAccessories{{std::string(kTkCSDeviceAccessoryDuplexer), *isInstalled}});
    }

  private:
    CoreInterfaceScope before_;
};

}  // namespace TkPPDUpdating::Testing
