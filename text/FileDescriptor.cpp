#include "text/FileDescriptor.h"

#include <cerrno>
#include <cstddef>

namespace TkPPDUpdating {

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace TkPPDUpdating
