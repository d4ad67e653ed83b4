// What a start asks the desktop for, without a type of the library that asks (GIO). It is dear to
// load, so that a program does without it where there is no session bus.
#pragma once

#include <memory>
#include <optional>

#include "base/result.h"
#include "freedesktop/calendars/server/sources_search.h"
#include "freedesktop/dates/clock_format.h"

namespace quorvel::freedesktop {

// Belongs to the thread that made it. A search may outlive it.
class Desktop {
public:
    virtual ~Desktop() = default;

    // The user's choice now, else the locale's format.
    virtual ClockFormat clockFormat() = 0;
    // On any thread; never null.
    virtual std::unique_ptr<eds::SourcesSearch> makeSourcesSearch() const = 0;
    // Present: the library cannot be loaded, so that nothing was asked.
    virtual std::optional<Error> failure() const { return std::nullopt; }
};

} // namespace quorvel::freedesktop
