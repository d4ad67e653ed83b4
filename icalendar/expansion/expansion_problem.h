// What is wrong with a parsed calendar and shows only when its events are expanded.
#pragma once

#include <cstddef>
#include <functional>

#include "base/translatable_text.h"
#include "icalendar/expansion/loaded_file.h"

namespace quorvel::icalendar {

// Called on the thread that expands. The line counts from 1; 0: unknown.
using ExpansionProblemHandler =
    std::function<void(LoadedFile& file, std::size_t line, TranslatableText what)>;

} // namespace quorvel::icalendar
