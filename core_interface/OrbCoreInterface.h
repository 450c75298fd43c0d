#pragma once

#include <memory>

#include "core_interface/OrbProcess.h"
#include "core_interface/TkCommunicationServices.h"
#include "core_interface/TkCore.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// The one place where an application sets what stands behind the interface: the core library, the
/// communication-services library, the environment and the clock.
///
/// Set before the first manager operation and not while one runs; a setting holds for the process
/// until it is replaced. Reading is safe from several threads. Nothing is raised.
class TKPPDUPDATING_PUBLIC OrbCoreInterface {
  public:
    /// Null takes the library away: parsing a PPD then gives nothing.
    static void setCore(std::shared_ptr<const TkCore> core);
    /// The core library, or null when none is set.
    static std::shared_ptr<const TkCore> core();

    /// Null takes the library away: no device then gives a status.
    static void setCommunicationServices(std::shared_ptr<const TkCommunicationServices> services);
    /// The communication-services library, or null when none is set.
    static std::shared_ptr<const TkCommunicationServices> communicationServices();

    /// Null sets the process's own environment, which is also the start.
    static void setEnvironment(std::shared_ptr<const OrbEnvironment> environment);
    /// Never null.
    static std::shared_ptr<const OrbEnvironment> environment();

    /// Null sets the system's clock, which is also the start.
    static void setClock(std::shared_ptr<const OrbClock> clock);
    /// Never null.
    static std::shared_ptr<const OrbClock> clock();
};

}  // namespace TkPPDUpdating
