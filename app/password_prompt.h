// Reads a password that must not appear on the screen.
#pragma once

#include <string>

#include "base/result.h"

namespace quorvel::app {

// Asks on the terminal and does not show what is typed. The error has all that the user needs.
Result<std::string> askForPassword(const std::string& question);

// The next line of standard input.
Result<std::string> readPassword();

} // namespace quorvel::app
