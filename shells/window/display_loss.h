// Ends the process when the display disappears while the window is open.
#pragma once

namespace quorvel::window {

// Call after gtk_init(). When the X display is lost, calls `onLost`, which may report it, and ends
// the process at once with status 1, as no request to the display can be answered any more. On
// Wayland the client library itself ends the process with status 1 and a message of its own.
void exitWhenDisplayIsLost(void (*onLost)());

} // namespace quorvel::window
