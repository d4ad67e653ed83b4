// Starts GTK for a program that shows nothing but the agenda's window.
#pragma once

#include "base/result.h"

namespace quorvel::window {

constexpr const char* applicationId = "org.quorvel.Quorvel"; // of the desktop entry and on the bus

// Chooses how GTK works in this program. Call it first in main(): it changes the environment, which
// is safe only while there is one thread.
void prepareToolkit();

// Opens the display. The error is a missing display.
Result<void> startToolkit();

} // namespace quorvel::window
