// What happens when the display goes away while the window is open.
#pragma once

namespace quorvel::window {

// After gtk_init(). `lost` tells the user; then the process ends with status 1, at once, as nothing
// can be asked of the display any more. Where the window system's client library ends the process
// by itself (Wayland), it does so in the same way, with a message of its own.
void endWhenDisplayIsLost(void (*lost)());

} // namespace quorvel::window
