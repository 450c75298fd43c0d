#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include <array>
#include <cstddef>
#include <string>

#include "tests/support/TemporaryDirectory.h"
#include "text/FileDescriptor.h"

namespace TkPPDUpdating::Testing {

/// The place of the journal, and what is sent there.
class ListeningJournal {
  public:
    ListeningJournal() : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof(address.sun_path) - 1);
        EXPECT_EQ(
            ::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    }

    std::string path() const { return (folder_.path() / "socket").string(); }

    /// Empty when nothing was sent.
    std::string datagram() const {
        std::array<char, 65536> bytes{};
        const ssize_t length = ::recv(socket_.get(), bytes.data(), bytes.size(), 0);
        return {bytes.data(), static_cast<std::size_t>(length < 0 ? 0 : length)};
    }

  private:
    TemporaryDirectory folder_;
    FileDescriptor socket_;
};

}  // namespace TkPPDUpdating::Testing
