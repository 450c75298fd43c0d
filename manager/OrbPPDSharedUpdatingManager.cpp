// Which manager is the shared one: the one place where the manager's interface and its
// implementation meet, so that neither includes the other in a circle.
#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "manager/OrbPPDUpdatingManager.h"

namespace TkPPDUpdating {

OrbPPDUpdatingManager& OrbPPDUpdatingManager::sharedInstance() {
    // Never destroyed, so that it can be used while the process ends.
    static auto* const manager = new OrbPPDConcreteUpdatingManager();
    return *manager;
}

}  // namespace TkPPDUpdating
