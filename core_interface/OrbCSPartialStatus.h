#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "core_interface/OrbCSDeviceStatus.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// What a status told, entry by entry. An entry is a status key (`core_interface/TkCSKeys.h`), or a
/// part of what stands under one, "KEY.PART": an accessory by its name
/// ("DeviceAccessories.Duplexer"), a value of the pens by its keyword
/// ("InstalledPensConfiguration.ZrPenDyes") or as "codeName". A key that was told tells all of its
/// parts.
using OrbCSToldEntries = std::set<std::string, std::less<>>;

/// An optional second interface of an `OrbCSDeviceStatus`, for one that may not tell everything.
///
/// "The printer has none" and "this answer does not tell" are two things: a value that is missing
/// under an entry that was told is none, one under another entry is not known.
class TKPPDUPDATING_PUBLIC OrbCSPartialStatus {
  public:
    virtual ~OrbCSPartialStatus() = default;

    /// The entries that were told; nothing when everything was. Never changes during the life of
    /// the object.
    virtual const std::optional<OrbCSToldEntries>& toldEntries() const = 0;

    /// The same for a status of any class: one without this interface tells everything.
    static std::optional<OrbCSToldEntries> toldEntriesOf(const OrbCSDeviceStatus& status);

    /// The entry for a part of what stands under a key.
    static std::string entryForPart(std::string_view key, std::string_view part);

    /// Whether the entry, or the key that it is a part of, is among them; always without a set.
    static bool isTold(const std::optional<OrbCSToldEntries>& told, std::string_view entry);
};

}  // namespace TkPPDUpdating
