#pragma once

#include <string>

namespace TkPPDUpdating::Testing {

/// A network of the test process's own, with nothing but the loopback interface: every port is free
/// there, whatever runs on this machine.
class PrivateNetwork {
  public:
    /// Moves the process, and the programs that it starts from now on, into a network namespace of
    /// its own (network_namespaces(7)), in which everybody may listen on the ports below 1024; into
    /// a user namespace as well where the right to that is missing. Once for each process, before
    /// it has threads; later calls change nothing. Gives what went wrong; empty when nothing did.
    static std::string enter();

    /// Gives the process, and the programs that it starts from now on, an empty folder /run of its
    /// own (mount_namespaces(7)), for programs that keep sockets there which name a network.
    /// To be called after `enter`; otherwise as that.
    static std::string hideRunFolder();
};

}  // namespace TkPPDUpdating::Testing
