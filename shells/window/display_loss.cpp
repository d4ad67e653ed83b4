#include "shells/window/display_loss.h"

#include <cstdlib>
#include <unistd.h>

#include <gdk/gdk.h>
#ifdef GDK_WINDOWING_X11
#include <gdk/gdkx.h>
#endif

namespace quorvel::window {

#ifdef GDK_WINDOWING_X11
namespace {

void (*tellOfLoss)() = nullptr;

// The library must not be returned to, and the exit handlers would talk to the display.
int endWithoutDisplay(Display*) {
    tellOfLoss();
    _exit(EXIT_FAILURE);
}

} // namespace
#endif

void endWhenDisplayIsLost(void (*lost)()) {
#ifdef GDK_WINDOWING_X11
    if (GDK_IS_X11_DISPLAY(gdk_display_get_default())) {
        tellOfLoss = lost;
        XSetIOErrorHandler(endWithoutDisplay);
    }
#endif
}

} // namespace quorvel::window
