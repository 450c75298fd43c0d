// A module whose class has the name of a built-in one, for AddedModules_test.cpp.
#include <TkPPDUpdating/backends/modules/TkPPDUpdatingModule.h>
#include <TkPPDUpdating/manager/OrbClass.h>
#include <TkPPDUpdating/manager/OrbPPDUpdatingManager.h>
#include <TkPPDUpdating/updaters/default_choice/OrbPPDOneOptionUpdater.h>

namespace {

using namespace TkPPDUpdating;

class SecondDuplexerUpdater : public OrbPPDOneOptionUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDDuplexerInstalledUpdater";

    SecondDuplexerUpdater() : OrbPPDOneOptionUpdater("ZrDuplexer", "DeviceAccessories.Duplexer") {}
};

}  // namespace

const TkPPDUpdating::Module TkPPDUpdatingModule = {
    .registerUpdaters = [](OrbPPDUpdatingManager& manager) {
        manager.registerUpdaterClass(&OrbClassOf<SecondDuplexerUpdater>());
    }};
