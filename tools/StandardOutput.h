#pragma once

#include <string_view>

namespace TkPPDUpdating {

/// The tool's result goes to standard output, and nothing else does.
class StandardOutput {
  public:
    StandardOutput() = delete;

    /// Writes all bytes; raises a `Failure` when they cannot be written.
    static void write(std::string_view bytes);

    /// Takes the numbers of the standard streams that the caller has closed, so that no file that
    /// is opened later gets one of them and is written to by mistake. Writing to such a stream
    /// still fails. To be called first.
    static void reserveClosedStreams();
};

}  // namespace TkPPDUpdating
