#include <span>
#include <vector>

#include "manager/OrbClassTable.h"
#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"
#include "updaters/capabilities/OrbPPDNonInstallableDuplexUpdater.h"

namespace TkPPDUpdating {

std::span<const OrbClass* const> OrbClassTable() {
    // One line for each updater, folder by folder.
    static const std::vector<const OrbClass*> classes = {
        // default_choice
        // attributes
        // capabilities
        &OrbClassOf<OrbPPDDeviceCapabilitiesUpdater>(),
        &OrbClassOf<OrbPPDNonInstallableDuplexUpdater>(),
        // custom_media
    };
    return classes;
}

}  // namespace TkPPDUpdating
