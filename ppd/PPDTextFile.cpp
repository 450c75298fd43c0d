#include "ppd/PPDTextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

#include "ppd/UTF8.h"

namespace TkPPDUpdating {

namespace {

/// Closes the descriptor at the end of the scope.
class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    int get() const { return descriptor_; }

  private:
    int descriptor_;
};

std::string systemError() {
    return std::generic_category().message(errno);
}

/// Reads to the end of the file, which may be longer or shorter than it was said to be.
std::optional<std::string> bytesOf(int descriptor, std::size_t expectedSize,
                                   std::size_t largestSize, std::string& reason) {
    std::string bytes;
    std::size_t length = 0;
    for (std::size_t room = expectedSize; length <= largestSize; room = length) {
        if (length == bytes.size()) {
            bytes.resize(length + room + 1);
        }
        const ssize_t count = ::read(descriptor, bytes.data() + length, bytes.size() - length);
        if (count == 0) {
            bytes.resize(length);
            return bytes;
        }
        if (count < 0 && errno != EINTR) {
            reason = systemError();
            return std::nullopt;
        }
        length += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    reason = "is larger than " + std::to_string(largestSize) + " bytes";
    return std::nullopt;
}

std::optional<std::string> bytesOfRegularFile(const std::string& path, std::size_t largestSize,
                                              std::string& reason) {
    // O_NONBLOCK: opening a named pipe must not wait for a writer.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0) {
        reason = systemError();
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        reason = S_ISDIR(status.st_mode) ? "is a directory" : "is not a regular file";
        return std::nullopt;
    }
    const auto expectedSize = static_cast<std::size_t>(status.st_size);
    return bytesOf(file.get(), std::min(expectedSize, largestSize), largestSize, reason);
}

}  // namespace

PPDText PPDTextWithContentsOfFile(const std::string& path, std::string* reason,
                                  std::size_t largestSize) {
    std::string ignored;
    std::string& cause = reason ? *reason : ignored;
    auto bytes = bytesOfRegularFile(path, largestSize, cause);
    if (!bytes) {
        return nullptr;
    }
    if (const auto invalid = firstInvalidUTF8Byte(*bytes)) {
        cause = "is not valid UTF-8 at byte " + std::to_string(*invalid);
        return nullptr;
    }
    return makePPDText(std::move(*bytes));
}

}  // namespace TkPPDUpdating
