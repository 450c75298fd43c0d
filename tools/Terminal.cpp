#include "tools/Terminal.h"

#include <unistd.h>

#include "core_interface/OrbCoreInterface.h"

namespace TkPPDUpdating {

bool Terminal::isBehindStandardOutput() {
    return ::isatty(STDOUT_FILENO) == 1;
}

bool Terminal::standardOutputTakesColour() {
    const auto environment = OrbCoreInterface::environment();
    return isBehindStandardOutput() &&
           environment->valueForVariable("NO_COLOR").value_or("").empty() &&
           environment->valueForVariable("TERM").value_or("dumb") != "dumb";
}

}  // namespace TkPPDUpdating
