#include "manager/OrbClassTable.h"

#include <algorithm>

namespace TkPPDUpdating {

const OrbClass* OrbClassFromName(std::string_view name) {
    for (const auto classes : {OrbClassTable(), OrbFurtherClassTable()}) {
        const auto found = std::find_if(classes.begin(), classes.end(),
                                        [name](const auto* each) { return each->name() == name; });
        if (found != classes.end()) {
            return *found;
        }
    }
    return nullptr;
}

}  // namespace TkPPDUpdating
