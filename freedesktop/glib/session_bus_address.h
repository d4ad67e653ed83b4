// Whether there may be a session bus, from the environment alone.
#pragma once

namespace quorvel::freedesktop {

// False if the environment shows that there is no session bus. Does not connect and never starts a
// bus.
bool mayHaveSessionBus();

} // namespace quorvel::freedesktop
