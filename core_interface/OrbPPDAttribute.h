#pragma once

#include <optional>
#include <string_view>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// One main-keyword line of a parsed PPD. Owned by the model; valid as long as the `OrbPPDFile`
/// that it came from.
class TKPPDUPDATING_PUBLIC OrbPPDAttribute {
  public:
    virtual ~OrbPPDAttribute() = default;

    /// The value without its enclosing quotes (UTF-8); nothing when only blanks follow the colon. A
    /// quoted empty value is the empty text.
    virtual std::optional<std::string_view> value() const = 0;

    /// The translation text after "/" (UTF-8), or nothing.
    virtual std::optional<std::string_view> text() const = 0;
};

}  // namespace TkPPDUpdating
