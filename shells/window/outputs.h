// Finds an output of the display by the name that the desktop gives it.
#pragma once

#include <string>

#include <gtk/gtk.h>

#include "base/result.h"

namespace quorvel::window {

// Null for an empty name. The error lists the outputs that exist.
Result<GdkMonitor*> outputNamed(const std::string& name);

} // namespace quorvel::window
