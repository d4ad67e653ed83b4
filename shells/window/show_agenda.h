// Everything that `quorvel show` does once its options are known.
#pragma once

#include "shells/window/agenda_window.h"

namespace quorvel::window {

// After prepareToolkit(). Opens the window, and returns when it is closed, or the process is asked
// to end; links and applications that were opened last get a moment to come up. `displayLost` is
// called when the display goes away, right before the process ends. Throws NoDisplayError,
// freedesktop::UnknownClassError, and what fails in the widget.
void showAgenda(freedesktop::FreedesktopPlatform& platform, const freedesktop::LoadedBundle& bundle,
                AgendaWindowOptions options, void (*displayLost)());

} // namespace quorvel::window
