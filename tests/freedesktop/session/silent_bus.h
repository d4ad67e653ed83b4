// A session bus that accepts connections and never answers.
#pragma once

#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "freedesktop/io/file_descriptor.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::testing_session {

// The session's bus as long as the object lives.
class SilentBus {
public:
    SilentBus() {
        const std::string path = m_folder / "bus";
        sockaddr_un name{};
        name.sun_family = AF_UNIX;
        path.copy(name.sun_path, sizeof name.sun_path - 1);
        EXPECT_EQ(bind(m_socket.get(), reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
        EXPECT_EQ(listen(m_socket.get(), 1), 0);
        m_address.emplace("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path).c_str());
    }

private:
    TemporaryFolder m_folder;
    freedesktop::FileDescriptor m_socket{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    std::optional<EnvironmentVariable> m_address;
};

} // namespace quorvel::testing_session
