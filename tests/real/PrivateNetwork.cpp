#include "tests/real/PrivateNetwork.h"

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace TkPPDUpdating::Testing {

namespace {

std::string failure(const char* what) {
    return std::string(what) + ": " + std::generic_category().message(errno);
}

bool writeFile(const char* path, const std::string& text) {
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    const bool isWritten =
        file >= 0 && write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(file);
    return isWritten;
}

/// The user stays who it is: some programs behave differently for root.
std::string enterUserNamespace() {
    const std::string user = std::to_string(getuid());
    const std::string group = std::to_string(getgid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
        return failure("no network namespace of its own");
    }
    const bool isMapped = writeFile("/proc/self/setgroups", "deny") &&
                          writeFile("/proc/self/uid_map", user + " " + user + " 1") &&
                          writeFile("/proc/self/gid_map", group + " " + group + " 1");
    return isMapped ? "" : failure("no users in the namespace");
}

std::string setLoopbackUp() {
    const int anySocket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strncpy(request.ifr_name, "lo", sizeof(request.ifr_name) - 1);
    request.ifr_flags = IFF_UP | IFF_RUNNING | IFF_LOOPBACK | IFF_MULTICAST;
    const bool isUp = ioctl(anySocket, SIOCSIFFLAGS, &request) == 0;
    std::string wrong = isUp ? "" : failure("the loopback interface stays down");
    close(anySocket);
    return wrong;
}

std::string enterOnce() {
    std::string wrong = unshare(CLONE_NEWNET) == 0 ? "" : enterUserNamespace();
    if (wrong.empty()) {
        wrong = setLoopbackUp();
    }
    // Root may listen there in any case.
    if (wrong.empty() && !writeFile("/proc/sys/net/ipv4/ip_unprivileged_port_start", "0") &&
        geteuid() != 0) {
        wrong = failure("the ports below 1024 are not free");
    }
    return wrong;
}

std::string hideRunFolderOnce() {
    if (unshare(CLONE_NEWNS) != 0) {
        return failure("no mount namespace of its own");
    }
    // In a bare root whose / is no mount there is nothing to be said of it (EINVAL).
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 && errno != EINVAL) {
        return failure("the mounts are not its own");
    }
    return mount("tmpfs", "/run", "tmpfs", MS_NOSUID | MS_NODEV, nullptr) == 0
               ? ""
               : failure("no folder /run of its own");
}

}  // namespace

std::string PrivateNetwork::hideRunFolder() {
    static const std::string wrong = hideRunFolderOnce();
    return wrong;
}

std::string PrivateNetwork::enter() {
    static const std::string wrong = enterOnce();
    return wrong;
}

}  // namespace TkPPDUpdating::Testing
