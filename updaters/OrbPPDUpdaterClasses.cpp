#include <span>
#include <vector>

#include "manager/OrbClassTable.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

namespace TkPPDUpdating {

std::span<const OrbClass* const> OrbClassTable() {
    // One line for each updater, folder by folder.
    static const std::vector<const OrbClass*> classes = {
        // default_choice
        // attributes
        // capabilities
        // custom_media
        &OrbClassOf<OrbPPDCustomMediaUpdater>(),
    };
    return classes;
}

}  // namespace TkPPDUpdating
