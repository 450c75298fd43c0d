#include <span>
#include <vector>

#include "manager/OrbClassTable.h"
#include "updaters/attributes/OrbPPDEstimatedPagesUpdater.h"
#include "updaters/attributes/OrbPPDLinTablesUpdater.h"
#include "updaters/attributes/OrbPPDMaxResolutionUpdater.h"
#include "updaters/attributes/OrbPPDPensConfigUpdater.h"
#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"
#include "updaters/capabilities/OrbPPDNonInstallableDuplexUpdater.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"
#include "updaters/default_choice/OrbPPDDefaultPageSizeUpdater.h"
#include "updaters/default_choice/OrbPPDDuplexerInstalledUpdater.h"
#include "updaters/default_choice/OrbPPDInstallableOptionsUpdater.h"
#include "updaters/default_choice/OrbPPDLowerTrayInstalledUpdater.h"
#include "updaters/default_choice/OrbPPDPenConfigUpdater.h"

namespace TkPPDUpdating {

std::span<const OrbClass* const> OrbClassTable() {
    // One line for each updater, folder by folder.
    // clang-format off
    static const std::vector<const OrbClass*> classes = {
        // default_choice
        &OrbClassOf<OrbPPDDefaultPageSizeUpdater>(),
        &OrbClassOf<OrbPPDDuplexerInstalledUpdater>(),
        &OrbClassOf<OrbPPDLowerTrayInstalledUpdater>(),
        &OrbClassOf<OrbPPDPenConfigUpdater>(),
        // attributes
        &OrbClassOf<OrbPPDEstimatedPagesUpdater>(),
        &OrbClassOf<OrbPPDLinTablesUpdater>(),
        &OrbClassOf<OrbPPDMaxResolutionUpdater>(),
        &OrbClassOf<OrbPPDPensConfigAdditionalInfoUpdater>(),
        &OrbClassOf<OrbPPDPensConfigCSLInfoUpdater>(),
        &OrbClassOf<OrbPPDPensConfigFamilyIDUpdater>(),
        &OrbClassOf<OrbPPDPensConfigNameUpdater>(),
        // capabilities
        &OrbClassOf<OrbPPDDeviceCapabilitiesUpdater>(),
        &OrbClassOf<OrbPPDNonInstallableDuplexUpdater>(),
        // custom_media
        &OrbClassOf<OrbPPDCustomMediaUpdater>(),
    };
    // clang-format on
    return classes;
}

std::span<const OrbClass* const> OrbFurtherClassTable() {
    static const std::vector<const OrbClass*> classes = {
        &OrbClassOf<OrbPPDInstallableOptionsUpdater>(),
    };
    return classes;
}

}  // namespace TkPPDUpdating
