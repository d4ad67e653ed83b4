// Deadlines on the default main context. For this folder alone.
#pragma once

#include <functional>

#include "freedesktop/launch/gio_handles.h"

namespace quorvel::freedesktop::launch {

// Calls once after so many seconds, never once the handle is gone. What is no time is none at all;
// an hour is the longest.
SourceHandle callAfter(double seconds, std::function<void()> call);

} // namespace quorvel::freedesktop::launch
