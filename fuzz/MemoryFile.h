#pragma once

#include <sys/mman.h>

#include <string>
#include <string_view>

#include "fuzz/FuzzTarget.h"
#include "text/FileDescriptor.h"

namespace TkPPDUpdating::Fuzzing {

/// A regular file that stands in memory only, for what is read by its path: nothing of it is left
/// when a target is stopped.
class MemoryFile {
  public:
    explicit MemoryFile(std::string_view bytes) : file_(::memfd_create("input", MFD_CLOEXEC)) {
        require(file_.isOpen() && writeAll(file_.get(), bytes), "there is a file in memory");
    }

    /// Valid as long as the object, in this process.
    std::string path() const { return "/proc/self/fd/" + std::to_string(file_.get()); }

  private:
    FileDescriptor file_;
};

}  // namespace TkPPDUpdating::Fuzzing
