// Runs the command `quorvel show` once its options are known.
#pragma once

#include <cstdint>

#include "base/result.h"
#include "shells/window/agenda_window_options.h"
#include "shells/window/instance_role.h"

namespace quorvel::freedesktop {
class FreedesktopPlatform;
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::window {

// Call prepareToolkit() before. Opens the window and returns when it has been closed or the process
// has received a signal to end; before that, it waits briefly for the links and applications that
// were opened last. Where another process of the session shows a plain window already, presents
// that one and returns at once; `options` stands for what the window shows. `onDisplayLost` is
// called when the display disappears, right before the process ends with status 1. The error is a
// missing display, or a layer that the display does not have; exceptions of the widget are passed
// on.
Result<InstanceRole> showAgenda(freedesktop::FreedesktopPlatform& platform,
                                const freedesktop::LoadedBundle& bundle, AgendaWindowOptions window,
                                std::uint64_t options, void (*onDisplayLost)());

} // namespace quorvel::window
