// What is wrong with a parsed calendar and shows only when its events are expanded.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "icalendar/expansion/loaded_file.h"

namespace quorvel::icalendar {

// Called on the thread that expands. The line counts from 1; 0: unknown.
using ExpansionProblemHandler =
    std::function<void(LoadedFile& file, std::size_t line, std::string what)>;

} // namespace quorvel::icalendar
