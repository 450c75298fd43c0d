// Uses the library as the driver suite would: `consumer PPD` writes the PPD updated for a printer
// that has a duplexer and a second tray, by the built-in updaters and two of its own. The printer's
// status stands behind the scheme "example"; where a component has another source of statuses, that
// is registered, too.
#include <TkPPDUpdating/backends/ppdmodel/PPDModelCore.h>
#include <TkPPDUpdating/backends/schemes/DeviceStatusSchemes.h>
#include <TkPPDUpdating/core_interface/OrbCoreInterface.h>
#include <TkPPDUpdating/core_interface/OrbInvalidOperationError.h>
#include <TkPPDUpdating/core_interface/TkCSKeys.h>
#include <TkPPDUpdating/manager/OrbPPDUpdatingManager.h>
#include <TkPPDUpdating/ppd/OrbPPDProcessor.h>
#include <TkPPDUpdating/updaters/attributes/OrbPPDAttributesUpdater.h>
#include <TkPPDUpdating/updaters/default_choice/OrbPPDStatusBasedOptionsUpdater.h>

#include <array>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#ifdef CONSUMER_WITH_CUPS
#include <TkPPDUpdating/backends/cups/CUPSQueues.h>
#endif
#ifdef CONSUMER_WITH_IPP
#include <TkPPDUpdating/backends/ipp/IPPSchemes.h>
#endif
#ifdef CONSUMER_WITH_PostScript
#include <TkPPDUpdating/backends/postscript/PostScriptSchemes.h>
#endif
#ifdef CONSUMER_WITH_Recorded
#include <TkPPDUpdating/backends/recorded/RecordedDeviceStatus.h>
#endif
#ifdef CONSUMER_WITH_SNMP
#include <TkPPDUpdating/backends/snmp/SNMPSchemes.h>
#endif

namespace {

using namespace TkPPDUpdating;

class PrinterWithDuplexer : public OrbCSDeviceStatus {
  public:
    const OrbCSStatusValue* statusValueForKey_error(std::string_view key,
                                                    std::string* /*error*/) const override {
        return key == kTkCSDeviceAccessoriesKey ? &accessories_ : nullptr;
    }

  private:
    OrbCSStatusValue accessories_ =
        OrbCSDeviceAccessories{{std::string(kTkCSDeviceAccessoryDuplexer), true},
                               {std::string(kTkCSDeviceAccessoryTray2), true}};
};

/// Says anew, of a default that the library knows, what the accessory says.
class TrayUpdater : public OrbPPDStatusBasedOptionsUpdater {
  public:
    static constexpr std::string_view kClassName = "TrayUpdater";

    std::vector<std::string> optionNames() override { return {"ZrLowerTrayInstalled"}; }
    std::optional<std::string_view> statusKeyForOptionWithName(std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::string_view> accessoryNameForOptionWithName(std::string_view) override {
        return kTkCSDeviceAccessoryTray2;
    }
    std::optional<std::string> PPDChoiceTextForStatusValue(const StatusValue& value) override {
        return choiceTextForInstalledAccessory(value);
    }
};

/// Writes an attribute that every PPD has.
class NickNameUpdater : public OrbPPDAttributesUpdater {
  public:
    static constexpr std::string_view kClassName = "NickNameUpdater";

    std::span<const std::string_view> attributeNames() const override {
        static constexpr std::array<std::string_view, 1> kNames = {"ShortNickName"};
        return kNames;
    }
    std::optional<OrbPPDUpdatingValues> attributesFromDeviceWithURI_context(
        std::optional<std::string_view>, OrbDictionary*) override {
        return OrbPPDUpdatingValues{{"ShortNickName", "\"Of the consumer\""}};
    }
};

std::shared_ptr<const DeviceStatusSchemes> printers() {
    auto schemes = std::make_shared<DeviceStatusSchemes>();
    schemes->registerScheme("example", [](const std::string&, const OrbDictionary*, OrbCSError&) {
        return std::make_shared<const PrinterWithDuplexer>();
    });
#ifdef CONSUMER_WITH_IPP
    registerIPPDeviceStatus(*schemes);
#endif
#ifdef CONSUMER_WITH_PostScript
    registerPostScriptDeviceStatus(*schemes);
#endif
#ifdef CONSUMER_WITH_Recorded
    registerRecordedDeviceStatus(*schemes);
#endif
#ifdef CONSUMER_WITH_SNMP
    registerSNMPDeviceStatus(*schemes);
#endif
    return schemes;
}

std::shared_ptr<const PPDModelCore> PPDs() {
#ifdef CONSUMER_WITH_CUPS
    return std::make_shared<const PPDModelCore>(queuePPDsOfCUPS("127.0.0.1:1"));
#else
    return std::make_shared<const PPDModelCore>();
#endif
}

/// Whether each scheme has a backend behind it: nobody answers at port 1 of this machine.
bool answersAreRight(const DeviceStatusSchemes& schemes) {
    bool areRight = true;
    for (const std::string& scheme : schemes.schemes()) {
        OrbCSError error;
        const auto status = schemes.deviceStatusWithURI_parameters_error(scheme + "://127.0.0.1:1",
                                                                         nullptr, &error);
        std::fprintf(stderr, "%s: %s\n", scheme.c_str(), error.reason.c_str());
        areRight = areRight && (status != nullptr) == (scheme == "example") &&
                   error.reason.find("no backend for the scheme") == std::string::npos;
    }
    return areRight;
}

/// The text with a comment-like attribute at its end, edited line by line.
std::string edited(const PPDText& text) {
    const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
    processor->setInsertLocation(processor->lines()->size());
    processor->insertAttributeWithKeyword_spec_text_value_wrap("ConsumerWasHere", std::nullopt,
                                                               std::nullopt, "True", false);
    return *processor->content();
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    const auto schemes = printers();
    OrbCoreInterface::setCommunicationServices(schemes);
    OrbCoreInterface::setCore(PPDs());
    auto& manager = OrbPPDUpdatingManager::sharedInstance();
    if (!answersAreRight(*schemes) || !manager.registerUpdaterClass(&OrbClassOf<TrayUpdater>()) ||
        !manager.registerUpdaterClass(&OrbClassOf<NickNameUpdater>())) {
        return 3;
    }
    // The base class's own operation raises, and what it raises is caught by its type.
    try {
        OrbPPDUpdatingManager().registerUpdaterClass(nullptr);
        return 4;
    } catch (const OrbInvalidOperationError& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    const PPDText text =
        manager.updatedPPDContentsForFile_deviceURI(arguments[1], "example:printer");
    if (!text) {
        return 1;
    }
    const std::string result = edited(text);
    return std::fwrite(result.data(), 1, result.size(), stdout) == result.size() ? 0 : 1;
}
