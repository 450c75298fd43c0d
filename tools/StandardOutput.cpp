#include "tools/StandardOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "text/FileDescriptor.h"
#include "tools/Diagnostics.h"
#include "tools/Failure.h"

namespace TkPPDUpdating {

void StandardOutput::write(std::string_view bytes) {
    Diagnostics::clearProgress();
    if (!writeAll(STDOUT_FILENO, bytes)) {
        throw Failure::ofSystem("standard output");
    }
}

void StandardOutput::writeIfOpen(std::string_view bytes) {
    // Only a stream that was closed is open for reading: see below.
    const int flags = ::fcntl(STDOUT_FILENO, F_GETFL);  // NOLINT(cppcoreguidelines-pro-type-vararg)
    const bool isOpen = flags == -1 ? errno != EBADF : (flags & O_ACCMODE) != O_RDONLY;
    if (isOpen) {
        write(bytes);
    }
}

bool StandardOutput::isFile(const std::string& path) {
    struct stat file {};
    struct stat output {};
    return ::stat(path.c_str(), &file) == 0 && ::fstat(STDOUT_FILENO, &output) == 0 &&
           file.st_dev == output.st_dev && file.st_ino == output.st_ino;
}

void StandardOutput::reserveClosedStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) == -1 && errno == EBADF) {
            // Opened the wrong way round on purpose: its use fails as on the closed stream.
            const int mode = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
            (void)::open("/dev/null", mode);  // NOLINT(cppcoreguidelines-pro-type-vararg)
        }
    }
}

}  // namespace TkPPDUpdating
