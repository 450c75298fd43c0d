#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "core_interface/OrbDictionary.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// An ICC colour profile of a custom media type. Immutable.
class TKPPDUPDATING_PUBLIC OrbICCProfile {
  public:
    virtual ~OrbICCProfile() = default;

    /// Made by the core library from `kTkPPDProfileNameKey`, `kTkPPDProfileURLKey` (absolute file
    /// URL) and `kTkPPDProfileQualifierVer2Key`, all `std::string`. Null when the library makes
    /// none.
    static std::shared_ptr<const OrbICCProfile> profileWithPPDParameters(
        const OrbDictionary& parameters);

    /// The file URL of the profile file (RFC 8089); nothing when it is not known.
    virtual std::optional<std::string_view> URL() const = 0;

    /// The qualifier that names the profile in "cupsICCProfile" (CUPS PPD extensions:
    /// cupsICCProfile); nothing when the profile has only an ID.
    virtual std::optional<std::string_view> qualifierVer2() const = 0;

    /// The profile's number; nothing when it has none.
    virtual std::optional<std::uint64_t> profileID() const = 0;

    /// Whether the two are the same profile: URL, qualifier and ID are equal, unless the class has
    /// an equality of its own.
    virtual bool isEqual(const OrbICCProfile& other) const;
};

}  // namespace TkPPDUpdating
