#include "tests/compositor/injected_input.h"

#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>

#include "freedesktop/io/file_descriptor.h"

namespace quorvel::compositor {

void sendInput(const std::string& socket, const std::string& command) {
    const freedesktop::FileDescriptor descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket.copy(address.sun_path, sizeof address.sun_path - 1);
    if (sendto(descriptor.get(), command.data(), command.size(), 0,
               reinterpret_cast<const sockaddr*>(&address), sizeof address) < 0) {
        throw std::runtime_error("the compositor takes no input at " + socket);
    }
}

} // namespace quorvel::compositor
