#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "core_interface/OrbDictionary.h"
#include "core_interface/OrbICCProfile.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A media type that somebody defined at the printer. Immutable. Texts are UTF-8.
class TKPPDUPDATING_PUBLIC OrbCustomMediaType {
  public:
    virtual ~OrbCustomMediaType() = default;

    /// Made by the core library from `kTkPPDCustomMediaTypeCodeNameKey`, `...NameKey`, `...IDKey`,
    /// `...ParentIDKey` (`std::string`) and, optionally, `...ICCProfileKey`
    /// (`std::shared_ptr<const OrbICCProfile>`). Null when the library makes none.
    static std::shared_ptr<const OrbCustomMediaType> customMediaTypeWithPPDParameters(
        const OrbDictionary& parameters);

    /// The display name; nothing when the printer gave none.
    virtual std::optional<std::string_view> name() const = 0;
    /// The printer's identifier of the media type, or nothing.
    virtual std::optional<std::string_view> mediaID() const = 0;
    /// The identifier of the built-in media type that it was derived from, or nothing.
    virtual std::optional<std::string_view> parentMediaID() const = 0;
    /// The colour profile, or null.
    virtual std::shared_ptr<const OrbICCProfile> ICCProfile() const = 0;
};

}  // namespace TkPPDUpdating
