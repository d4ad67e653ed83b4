// The settings of the agenda among those of the phone.
#pragma once

#include <glib-object.h>

namespace quorvel::phosh {

// The type that the phone's settings make when the user opens the page of the plugin.
GType lockScreenPreferencesType();

} // namespace quorvel::phosh
