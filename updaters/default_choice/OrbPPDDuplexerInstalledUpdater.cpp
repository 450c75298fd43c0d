#include "updaters/default_choice/OrbPPDDuplexerInstalledUpdater.h"

#include "core_interface/OrbCSPartialStatus.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

OrbPPDDuplexerInstalledUpdater::OrbPPDDuplexerInstalledUpdater()
    : OrbPPDOneOptionUpdater("ZrAutoDuplexerInstalled",
                             OrbCSPartialStatus::entryForPart(kTkCSDeviceAccessoriesKey,
                                                              kTkCSDeviceAccessoryDuplexer)) {}

}  // namespace TkPPDUpdating
