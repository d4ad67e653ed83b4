// The agenda on the lock screen of the phone's shell: a GTK widget that the shell makes when it
// locks the session, maps when the user turns to its page, and destroys when it unlocks.
#pragma once

#include <gtk/gtk.h>

namespace quorvel::phosh {

// The type of the widget, a box. Registered at the first call.
GType lockScreenAgendaType();

} // namespace quorvel::phosh
