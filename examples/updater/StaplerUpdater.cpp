// A module with an updater: the option "ZrStaplerInstalled" follows the accessory "Stapler".
#include <TkPPDUpdating/backends/modules/TkPPDUpdatingModule.h>
#include <TkPPDUpdating/manager/OrbClass.h>
#include <TkPPDUpdating/manager/OrbPPDUpdatingManager.h>
#include <TkPPDUpdating/updaters/default_choice/OrbPPDOneOptionUpdater.h>

#include <string_view>

namespace {

using namespace TkPPDUpdating;

class StaplerUpdater : public OrbPPDOneOptionUpdater {
  public:
    static constexpr std::string_view kClassName = "StaplerUpdater";

    StaplerUpdater() : OrbPPDOneOptionUpdater("ZrStaplerInstalled", "DeviceAccessories.Stapler") {}
};

}  // namespace

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .registerUpdaters = [](OrbPPDUpdatingManager& manager) {
        manager.registerUpdaterClass(&OrbClassOf<StaplerUpdater>());
    }};
