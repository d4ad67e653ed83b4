// The one symbol of the module that wraps the library.
#pragma once

#include "freedesktop/desktop/desktop.h"

namespace quorvel::freedesktop {

// The result belongs to the caller; null: there is not enough memory.
using MakeDesktop = Desktop* (*)();
inline constexpr const char* makeDesktopSymbol = "quorvelMakeDesktop";

} // namespace quorvel::freedesktop
