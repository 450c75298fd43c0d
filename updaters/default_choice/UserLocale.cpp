#include "updaters/default_choice/UserLocale.h"

#include <algorithm>

namespace TkPPDUpdating {

std::string userLocaleIdentifier(const OrbEnvironment& environment) {
    std::string locale;
    for (const char* variable : {"LC_ALL", "LC_PAPER", "LANG"}) {
        locale = environment.valueForVariable(variable).value_or("");
        if (!locale.empty()) {
            break;
        }
    }
    // language[_TERRITORY][.codeset][@modifier]
    locale.resize(std::min(locale.find_first_of(".@"), locale.size()));
    const bool isPOSIX = locale.empty() || locale == "C" || locale == "POSIX";
    return isPOSIX ? "en_US_POSIX" : locale;
}

}  // namespace TkPPDUpdating
