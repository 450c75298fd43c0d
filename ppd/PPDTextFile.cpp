#include "ppd/PPDTextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

#include "ppd/PPDTextIndex.h"
#include "text/FileDescriptor.h"
#include "text/LargeString.h"

namespace TkPPDUpdating {

namespace {

/// Memory that is cleared and read into before it leaves the processor's cache is written once.
constexpr std::size_t kAtOnce = std::size_t{64} * 1024;

std::string systemError() {
    return std::generic_category().message(errno);
}

/// Reads to the end of the file, which may be longer or shorter than it was said to be.
std::optional<std::string> bytesOf(int descriptor, std::size_t expectedSize,
                                   std::size_t largestSize, std::string& reason) {
    std::string bytes = stringWithRoom(expectedSize + 1);
    for (std::size_t length = 0; length <= largestSize;) {
        if (length == bytes.size()) {
            const std::size_t room = bytes.capacity() - length;
            bytes.resize(length + (room == 0 ? kAtOnce : std::min(room, kAtOnce)));
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

std::optional<std::string> bytesOfRegularFile(int descriptor, std::size_t largestSize,
                                              std::string& reason) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        reason = systemError();
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        reason = S_ISDIR(status.st_mode) ? "is a directory" : "is not a regular file";
        return std::nullopt;
    }
    const auto expectedSize = static_cast<std::size_t>(status.st_size);
    return bytesOf(descriptor, std::min(expectedSize, largestSize), largestSize, reason);
}

}  // namespace

PPDText PPDTextWithContentsOfDescriptor(int descriptor, std::string* reason,
                                        std::size_t largestSize) {
    std::string ignored;
    std::string& cause = reason ? *reason : ignored;
    auto bytes = bytesOfRegularFile(descriptor, largestSize, cause);
    if (!bytes) {
        return nullptr;
    }
    PPDText text = makePPDText(std::move(*bytes));
    if (const auto invalid = text.index()->firstInvalidUTF8Byte()) {
        cause = "is not valid UTF-8 at byte " + std::to_string(*invalid);
        return nullptr;
    }
    return text;
}

PPDText PPDTextWithContentsOfFile(const std::string& path, std::string* reason,
                                  std::size_t largestSize) {
    // O_NONBLOCK: opening a named pipe must not wait for a writer.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen()) {
        if (reason) {
            *reason = systemError();
        }
        return nullptr;
    }
    return PPDTextWithContentsOfDescriptor(file.get(), reason, largestSize);
}

}  // namespace TkPPDUpdating
