// A line to an open file.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// The newline is added here. What cannot be written is lost: a log has nobody to tell.
void writeLine(int descriptor, std::string line);

} // namespace quorvel::freedesktop
