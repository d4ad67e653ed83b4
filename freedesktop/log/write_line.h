// Writes a line to an open file.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// Adds the newline. Ignores errors, because a log cannot report that it cannot be written.
void writeLine(int descriptor, std::string line);

} // namespace quorvel::freedesktop
