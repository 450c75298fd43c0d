#pragma once

#include <algorithm>
#include <any>
#include <chrono>
#include <string_view>

#include "core_interface/OrbDictionary.h"
#include "core_interface/TkCSKeys.h"

namespace TkPPDUpdating {

/// A parameter of a request for a status; null when it is not given, or is of another type.
/// `parameters` may be null.
template <typename Value>
const Value* requestParameter(const OrbDictionary* parameters, std::string_view key) {
    if (!parameters) {
        return nullptr;
    }
    const auto entry = parameters->find(key);
    return entry == parameters->end() ? nullptr : std::any_cast<Value>(&entry->second);
}

/// Whether the parameters of a request for a status ask for the ways of the CUPS filter
/// (`kTkCSIsCUPSFilterModeKey`): a print job waits. `parameters` may be null.
inline bool isCUPSFilterMode(const OrbDictionary* parameters) {
    const bool* const value = requestParameter<bool>(parameters, kTkCSIsCUPSFilterModeKey);
    return value && *value;
}

/// How long a request for a status may take: `usual`, or `inFilterMode` where a print job waits,
/// but no longer than the caller waits (`kTkCSTimeLimitKey`). `parameters` may be null.
inline std::chrono::milliseconds requestTime(const OrbDictionary* parameters,
                                             std::chrono::milliseconds usual,
                                             std::chrono::milliseconds inFilterMode) {
    const auto time = isCUPSFilterMode(parameters) ? inFilterMode : usual;
    const auto* const limit =
        requestParameter<std::chrono::milliseconds>(parameters, kTkCSTimeLimitKey);
    return limit ? std::min(time, *limit) : time;
}

}  // namespace TkPPDUpdating
