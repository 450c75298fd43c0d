#include "tools/Terminal.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "core_interface/OrbCoreInterface.h"
#include "tools/Diagnostics.h"

namespace TkPPDUpdating {

namespace {

bool& progressIsShown() {
    static bool isShown = false;
    return isShown;
}

}  // namespace

bool Terminal::isBehindStandardOutput() {
    return ::isatty(STDOUT_FILENO) == 1;
}

bool Terminal::standardOutputTakesColour() {
    const auto environment = OrbCoreInterface::environment();
    return isBehindStandardOutput() &&
           environment->valueForVariable("NO_COLOR").value_or("").empty() &&
           environment->valueForVariable("TERM").value_or("dumb") != "dumb";
}

void Terminal::showProgress(std::string_view text) {
    if (::isatty(STDERR_FILENO) != 1) {
        return;
    }
    clearProgress();
    const std::string line = Diagnostics::printable(text);
    (void)std::fwrite(line.data(), 1, line.size(), stderr);
    progressIsShown() = true;
}

void Terminal::clearProgress() {
    if (progressIsShown()) {
        (void)std::fputs("\r\033[K", stderr);
        progressIsShown() = false;
    }
}

}  // namespace TkPPDUpdating
