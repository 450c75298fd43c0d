#pragma once

#include <memory>

#include "backends/ppdmodel/PPDModelCore.h"
#include "tools/OneAnswerServices.h"

namespace TkPPDUpdating {

/// The one place of the tool that says which backend serves what: makes those that it was built
/// with and puts them behind the core interface.
class Backends {
  public:
    /// Sets them in `OrbCoreInterface`.
    Backends();

    const PPDModelCore& core() const { return *core_; }
    const OneAnswerServices& devices() const { return *devices_; }

  private:
    std::shared_ptr<const PPDModelCore> core_;
    std::shared_ptr<const OneAnswerServices> devices_;
};

}  // namespace TkPPDUpdating
