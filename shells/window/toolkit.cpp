#include "shells/window/toolkit.h"

#include <gtk/gtk.h>

namespace quorvel::window {

namespace {

constexpr const char* applicationId = "org.quorvel.Quorvel"; // of the desktop entry
constexpr const char* glSettings = "GDK_GL";

// GDK loads the drivers when it opens a display, which takes longer than the rest of the agenda's
// start, and nothing here is painted with them. The applications that are started from here must
// not hear of it.
void doWithoutGl() {
    const bool isOurs = g_getenv(glSettings) == nullptr;
    g_setenv(glSettings, "disable", FALSE);
    gtk_parse_args(nullptr, nullptr); // reads the environment, once for all
    if (isOurs) {
        g_unsetenv(glSettings);
    }
}

} // namespace

void prepareToolkit() {
    g_set_prgname(applicationId); // by which a desktop finds the entry, and its icon
    gtk_disable_setlocale();      // numbers are read and written alike everywhere in the process
    doWithoutGl();
}

void startToolkit() {
    gdk_set_program_class(applicationId);
    if (gtk_init_check(nullptr, nullptr) == 0) {
        throw NoDisplayError("there is no display");
    }
}

} // namespace quorvel::window
