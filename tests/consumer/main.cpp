// Uses the installed library as the driver suite would: consumer PPD writes the PPD updated for a
// printer that has a duplexer. Its status stands behind the scheme "example".
#include <cstdio>
#include <memory>

#include "all_public_headers.h"

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
        OrbCSDeviceAccessories{{std::string(kTkCSDeviceAccessoryDuplexer), true}};
};

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    auto schemes = std::make_shared<DeviceStatusSchemes>();
    schemes->registerScheme("example", [](const std::string&, const OrbDictionary*, OrbCSError&) {
        return std::make_shared<const PrinterWithDuplexer>();
    });
    OrbCoreInterface::setCommunicationServices(schemes);
    OrbCoreInterface::setCore(std::make_shared<const PPDModelCore>());
    const PPDText text =
        OrbPPDUpdatingManager::sharedInstance().updatedPPDContentsForFile_deviceURI(
            arguments[1], "example:printer");
    if (!text) {
        return 1;
    }
    return std::fwrite(text->data(), 1, text->size(), stdout) == text->size() ? 0 : 1;
}
