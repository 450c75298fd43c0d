#pragma once

#include <span>
#include <string_view>

#include "manager/OrbClass.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The updater classes of this library: those that can be found by their name, and that a manager
/// registers when it is made. The updaters' folder defines it as one plain list, so that a static
/// link keeps every class.
TKPPDUPDATING_PUBLIC std::span<const OrbClass* const> OrbClassTable();

/// Further updater classes of this library, which can be found by their name as well, and which no
/// manager has unless somebody registers them.
TKPPDUPDATING_PUBLIC std::span<const OrbClass* const> OrbFurtherClassTable();

/// The class of that name in one of the tables, or null.
TKPPDUPDATING_PUBLIC const OrbClass* OrbClassFromName(std::string_view name);

}  // namespace TkPPDUpdating
