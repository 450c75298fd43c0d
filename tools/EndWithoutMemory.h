#pragma once

namespace TkPPDUpdating {

/// For std::set_terminate. What a library raises where nothing may be raised (in a destructor, for
/// example), or a thread where nobody catches it, ends the process. Without memory that is an error
/// like any other (`Diagnostics::outOfMemory`, `ExitStatus::noResult`), which is told once, however
/// many threads end so; what is being written is left to the next run, which tidies up. Whatever
/// else is raised is a mistake of the program, and aborts it.
[[noreturn]] void endWithoutMemory();

}  // namespace TkPPDUpdating
