#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Where a value of a status comes from: one attribute of a printer's answer.
struct OrbCSStatusSource {
    /// The entry of the status that is read from it (`core_interface/OrbCSPartialStatus.h`).
    std::string entry;
    /// What the printer's protocol calls it, for example "sides-supported".
    std::string name;
    /// What the printer said, for people: shortened, and any bytes.
    std::string value;

    friend bool operator==(const OrbCSStatusSource&, const OrbCSStatusSource&) = default;
};

/// An optional second interface of an `OrbCSDeviceStatus` that knows where its values come from.
/// For explanations only: no updater reads it.
class TKPPDUPDATING_PUBLIC OrbCSStatusSources {
  public:
    virtual ~OrbCSStatusSources() = default;

    /// The attributes that were in the answer; one that several entries are read from comes with
    /// each.
    virtual const std::vector<OrbCSStatusSource>& sources() const = 0;

    /// Those of a status of any class from which the entry, a part of it, or the key that it is a
    /// part of is read; empty for a status that does not know.
    static std::vector<OrbCSStatusSource> sourcesOf(const OrbCSDeviceStatus& status,
                                                    std::string_view entry);
};

}  // namespace TkPPDUpdating
