// Deadlines on the default main context. For the folders that wrap GLib.
#pragma once

#include <functional>

#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop {

// Calls once after so many seconds while the process's default main context runs, and not after the
// handle's end. At most an hour; zero where the number is not positive or not a number.
SourceHandle callAfter(double seconds, std::function<void()> call);

} // namespace quorvel::freedesktop
