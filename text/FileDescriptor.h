#pragma once

#include <unistd.h>

#include <string_view>
#include <utility>

namespace TkPPDUpdating {

/// Owns the number of an open file (POSIX file descriptor) and closes it at the end of its life. A
/// negative number stands for none.
class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor = -1) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileDescriptor() { (void)close(); }

    bool isOpen() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

    /// Closes it now. False when the system tells only then that something could not be written.
    bool close() { return !isOpen() || ::close(std::exchange(descriptor_, -1)) == 0; }

  private:
    int descriptor_;
};

/// Writes all bytes to an open file, in as many steps as it takes. False when they cannot be
/// written; errno then says why.
bool writeAll(int descriptor, std::string_view bytes);

}  // namespace TkPPDUpdating
