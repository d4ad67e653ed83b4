// What is reported about calendars.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "base/translatable_text.h"

namespace quorvel::freedesktop {

// Something in a calendar that cannot be read, or is shown differently from how it is written.
struct CalendarProblem {
    std::string file;
    std::size_t line = 0; // 0: unknown
    TranslatableText what;
    bool operator==(const CalendarProblem&) const = default;
};
using CalendarProblemHandler = std::function<void(const CalendarProblem&)>;

namespace calendars {

// A problem with the version of the file that it was found in, so that each is reported once.
struct VersionedProblem {
    CalendarProblem problem;
    std::uint64_t version = 0; // 0: of no file
    // The file, the folder or the source could not be read at all.
    bool isUnreadable = false;
    bool operator==(const VersionedProblem&) const = default;
};

} // namespace calendars

} // namespace quorvel::freedesktop
