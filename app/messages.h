// Writes the program's output and its error messages.
#pragma once

#include <string_view>

#include "base/result.h"

namespace quorvel::app {

// Writes all of the text to standard output.
Result<void> print(std::string_view text);

// Writes "quorvel: MESSAGE" as one line to standard error, without characters that a terminal would
// act upon.
void printError(const Error& error);

} // namespace quorvel::app
