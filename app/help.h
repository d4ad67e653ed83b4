// The commands, their options, and the texts that explain them.
#pragma once

#include <string>
#include <string_view>

#include "app/command_line.h"

namespace quorvel::app {

std::string_view commandName(Command command);

// `option` is the long name with its two dashes. Options that belong to no particular command are
// taken by all.
bool commandTakesOption(Command command, std::string_view option);

std::string programHelp();
std::string commandHelp(Command command);

} // namespace quorvel::app
