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

void (*lossHandler)() = nullptr;

// The library does not allow a return from here, and exit handlers would use the display.
int exitWithoutDisplay(Display*) {
    lossHandler();
    _exit(EXIT_FAILURE);
}

} // namespace
#endif

void exitWhenDisplayIsLost(void (*onLost)()) {
#ifdef GDK_WINDOWING_X11
    if (GDK_IS_X11_DISPLAY(gdk_display_get_default())) {
        lossHandler = onLost;
        XSetIOErrorHandler(exitWithoutDisplay);
    }
#endif
}

} // namespace quorvel::window
