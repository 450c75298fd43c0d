#pragma once

#include <string>
#include <string_view>

namespace TkPPDUpdating {

/// The tool's result goes to standard output, and nothing else does.
class StandardOutput {
  public:
    StandardOutput() = delete;

    /// Writes all bytes; raises a `Failure` when they cannot be written.
    static void write(std::string_view bytes);

    /// The same, but does nothing when the caller has closed the stream: for what is told beside a
    /// result that goes into a file.
    static void writeIfOpen(std::string_view bytes);

    /// Whether the path leads to what is behind standard output, so that what is written there
    /// would stand in the file.
    static bool isFile(const std::string& path);

    /// Takes the numbers of the standard streams that the caller has closed, so that no file that
    /// is opened later gets one of them and is written to by mistake. Writing to such a stream
    /// still fails. To be called first.
    static void reserveClosedStreams();
};

}  // namespace TkPPDUpdating
