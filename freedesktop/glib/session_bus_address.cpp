#include "freedesktop/glib/session_bus_address.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include <unistd.h>

namespace quorvel::freedesktop {

namespace {

constexpr std::string_view disabledBus = "disabled:"; // the address that stands for no bus

} // namespace

bool mayHaveSessionBus() {
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0') {
        return std::string_view(address) != disabledBus;
    }
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return folder != nullptr && access((std::string(folder) + "/bus").c_str(), F_OK) == 0;
}

} // namespace quorvel::freedesktop
