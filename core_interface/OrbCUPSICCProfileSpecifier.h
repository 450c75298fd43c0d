#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Names a profile by its number in the option keywords of "cupsICCProfile" and "ZrICCProfileId2".
class TKPPDUPDATING_PUBLIC OrbCUPSICCProfileSpecifier {
  public:
    virtual ~OrbCUPSICCProfileSpecifier() = default;

    /// The specifier that the core library makes for the profile with that number, or null.
    static std::shared_ptr<const OrbCUPSICCProfileSpecifier> specifierVer2WithProfileID(
        std::uint64_t profileID);

    /// The qualifier: the profile ID in decimal.
    virtual std::string CUPSQualifier() const = 0;
};

}  // namespace TkPPDUpdating
