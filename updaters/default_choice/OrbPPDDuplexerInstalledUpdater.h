#pragma once

#include <string_view>

#include "updaters/default_choice/OrbPPDOneOptionUpdater.h"

namespace TkPPDUpdating {

/// Sets the default of the installable option "ZrAutoDuplexerInstalled" to whether the printer has
/// its automatic duplexer installed.
class OrbPPDDuplexerInstalledUpdater : public OrbPPDOneOptionUpdater {
  public:
    static constexpr std::string_view kClassName = "OrbPPDDuplexerInstalledUpdater";

    OrbPPDDuplexerInstalledUpdater();
};

}  // namespace TkPPDUpdating
