#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "tools/OneAnswerServices.h"

namespace TkPPDUpdating {

/// The one place of the tool that names backends: makes those that it was built with and puts them
/// behind the core interface.
class Backends {
  public:
    /// Sets them in `OrbCoreInterface`.
    Backends();

    const PPDModelCore& core() const { return *core_; }
    const OneAnswerServices& devices() const { return *devices_; }

    /// Why texts of a status were dropped on reading it, one phrase each.
    static std::vector<std::string> droppedTexts(const OrbCSDeviceStatus& status);

  private:
    std::shared_ptr<const PPDModelCore> core_;
    std::shared_ptr<const OneAnswerServices> devices_;
};

}  // namespace TkPPDUpdating
