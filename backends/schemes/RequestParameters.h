#pragma once

#include <any>

#include "core_interface/OrbDictionary.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

/// Whether the parameters of a request for a status ask for the ways of the CUPS filter
/// (`kTkCSIsCUPSFilterModeKey`): a print job waits. `parameters` may be null.
inline bool isCUPSFilterMode(const OrbDictionary* parameters) {
    if (!parameters) {
        return false;
    }
    const auto entry = parameters->find(kTkCSIsCUPSFilterModeKey);
    const bool* value = entry == parameters->end() ? nullptr : std::any_cast<bool>(&entry->second);
    return value && *value;
}

}  // namespace TkPPDUpdating
