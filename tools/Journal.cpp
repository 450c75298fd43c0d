#include "tools/Journal.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cstddef>
#include <cstdint>

#include "core_interface/OrbCoreInterface.h"
#include "text/FileDescriptor.h"

namespace TkPPDUpdating {

namespace {

/// 64 bits, the lowest byte first.
std::string lengthOf(std::string_view value) {
    constexpr unsigned kBytes = 8;
    constexpr unsigned kBitsOfByte = 8;
    std::string bytes;
    for (unsigned i = 0; i < kBytes; ++i) {
        const auto byte = static_cast<std::uint64_t>(value.size()) >> (kBitsOfByte * i);
        bytes += static_cast<char>(static_cast<unsigned char>(byte & 0xFFU));
    }
    return bytes;
}

std::string number(Journal::Priority priority) {
    return std::to_string(static_cast<int>(priority));
}

}  // namespace

bool Journal::isBehind(int stream) {
    const auto named = OrbCoreInterface::environment()->valueForVariable("JOURNAL_STREAM");
    struct stat status {};
    return named && ::fstat(stream, &status) == 0 &&
           *named == std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

std::string Journal::datagram(const Fields& fields) {
    std::string bytes;
    for (const auto& [name, value] : fields) {
        bytes.append(name).append("\n").append(lengthOf(value)).append(value).append("\n");
    }
    return bytes;
}

std::string Journal::prefix(Priority priority) {
    return "<" + number(priority) + ">";
}

bool Journal::add(Priority priority, std::string_view message, Fields fields) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketPath_.size() >= sizeof(address.sun_path)) {
        return false;
    }
    socketPath_.copy(address.sun_path, socketPath_.size());
    fields.insert(fields.begin(), {{"MESSAGE", std::string(message)},
                                   {"PRIORITY", number(priority)},
                                   {"SYSLOG_IDENTIFIER", "tkppdupdate"}});
    const std::string bytes = datagram(fields);
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    return socket.isOpen() && ::sendto(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL,
                                       reinterpret_cast<const sockaddr*>(&address),
                                       sizeof(address)) == static_cast<ssize_t>(bytes.size());
}

}  // namespace TkPPDUpdating
