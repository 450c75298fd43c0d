#include "manager/OrbClassTable.h"

#include <algorithm>

namespace TkPPDUpdating {

const OrbClass* OrbClassFromName(std::string_view name) {
    const auto classes = OrbClassTable();
    const auto found = std::find_if(classes.begin(), classes.end(),
                                    [name](const OrbClass* each) { return each->name() == name; });
    return found == classes.end() ? nullptr : *found;
}

}  // namespace TkPPDUpdating
