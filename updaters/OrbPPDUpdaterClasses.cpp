#include <span>
#include <vector>

#include "manager/OrbClassTable.h"
#include "updaters/default_choice/OrbPPDDefaultPageSizeUpdater.h"
#include "updaters/default_choice/OrbPPDDuplexerInstalledUpdater.h"
#include "updaters/default_choice/OrbPPDLowerTrayInstalledUpdater.h"
#include "updaters/default_choice/OrbPPDPenConfigUpdater.h"

namespace TkPPDUpdating {

std::span<const OrbClass* const> OrbClassTable() {
    // One line for each updater, folder by folder.
    static const std::vector<const OrbClass*> classes = {
        // default_choice
        &OrbClassOf<OrbPPDDefaultPageSizeUpdater>(), &OrbClassOf<OrbPPDDuplexerInstalledUpdater>(),
        &OrbClassOf<OrbPPDLowerTrayInstalledUpdater>(), &OrbClassOf<OrbPPDPenConfigUpdater>(),
        // attributes
        // capabilities
        // custom_media
    };
    return classes;
}

}  // namespace TkPPDUpdating
