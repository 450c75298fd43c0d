#include <span>
#include <vector>

#include "manager/OrbClassTable.h"

namespace TkPPDUpdating {

std::span<const OrbClass* const> OrbClassTable() {
    // One line for each updater, folder by folder.
    static const std::vector<const OrbClass*> classes = {
        // default_choice
        // attributes
        // capabilities
        // custom_media
    };
    return classes;
}

}  // namespace TkPPDUpdating
