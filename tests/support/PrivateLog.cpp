#include "tests/support/PrivateLog.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <system_error>

namespace TkPPDUpdating::Testing {

namespace {

/// The mounts of a changed root cannot all be made private, but those of its /dev.
constexpr const char* kInPrivateDevices = R"(
propagation=private
unshare --mount true 2>/dev/null || propagation=unchanged
exec unshare --mount --propagation $propagation sh -ec '
mount --make-rprivate /dev 2>/dev/null || [ "$0" = private ]
mount -t tmpfs tmpfs /dev
ln -s "$1/log" /dev/log
shift
exec "$@"' $propagation "$0" "$@")";

}  // namespace

PrivateLog::PrivateLog() : socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = (folder_.path() / "log").string();
    std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
    if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        throw std::system_error(errno, std::generic_category(), path);
    }
}

PrivateLog::~PrivateLog() {
    close(socket_);
}

ProgramResult PrivateLog::run(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command = {"sh", "-ec", kInPrivateDevices, folder_.path()};
    if (getuid() != 0) {
        command.insert(command.begin(), {"unshare", "--user", "--map-current-user", "--keep-caps"});
    }
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runProgram(command);
}

std::vector<std::string> PrivateLog::messages() const {
    std::vector<std::string> all;
    std::array<char, 8192> buffer{};
    for (ssize_t count = 0; (count = recv(socket_, buffer.data(), buffer.size(), 0)) > 0;) {
        all.emplace_back(buffer.data(), static_cast<std::size_t>(count));
    }
    return all;
}

}  // namespace TkPPDUpdating::Testing
