#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace TkPPDUpdating {

/// Names a profile by its number in the option keywords of "cupsICCProfile" and "ZrICCProfileId2".
class OrbCUPSICCProfileSpecifier {
  public:
    virtual ~OrbCUPSICCProfileSpecifier() = default;

    /// The specifier that the core library makes for the profile with that number, or null.
    static std::shared_ptr<const OrbCUPSICCProfileSpecifier> specifierVer2WithProfileID(
        std::uint64_t profileID);

    /// The qualifier: the profile ID in decimal.
    virtual std::string CUPSQualifier() const = 0;
};

}  // namespace TkPPDUpdating
