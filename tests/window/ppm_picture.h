// Reads the pictures that the screenshots of a Wayland compositor are written as.
#pragma once

#include <string>

#include "tests/window/virtual_display.h"

namespace quorvel::window {

// Of a file in the format P6 with a byte per colour; empty for any other content.
Picture ppmPicture(const std::string& content);

} // namespace quorvel::window
