// The group of the settings that only the lock screen has.
#pragma once

#include <adwaita.h>

namespace quorvel::phosh {

// A floating reference. Null where the settings are not installed.
AdwPreferencesGroup* makeLockScreenGroup();

} // namespace quorvel::phosh
