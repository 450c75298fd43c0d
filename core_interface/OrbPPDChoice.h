#pragma once

#include <optional>
#include <string_view>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// One choice of an option of a parsed PPD. Owned by the model; valid as long as the `OrbPPDFile`
/// that it came from.
///
/// Implementers: never change what an object answers once it has been handed out.
class TKPPDUPDATING_PUBLIC OrbPPDChoice {
  public:
    virtual ~OrbPPDChoice() = default;

    /// The translation text of the choice (UTF-8), the part after "/"; nothing when its line has
    /// none.
    virtual std::optional<std::string_view> text() const = 0;
};

}  // namespace TkPPDUpdating
