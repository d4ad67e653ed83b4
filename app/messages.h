// Writes the program's output and its error messages.
#pragma once

#include <string_view>

namespace quorvel::app {

// To standard output, whole. Throws std::runtime_error where it cannot be written.
void print(std::string_view text);

// "quorvel: MESSAGE" on a line of standard error, harmless for a terminal.
void complain(std::string_view message);

} // namespace quorvel::app
