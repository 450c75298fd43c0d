#include "core_interface/OrbICCProfile.h"

namespace TkPPDUpdating {

bool OrbICCProfile::isEqual(const OrbICCProfile& other) const {
    return URL() == other.URL() && qualifierVer2() == other.qualifierVer2() &&
           profileID() == other.profileID();
}

}  // namespace TkPPDUpdating
