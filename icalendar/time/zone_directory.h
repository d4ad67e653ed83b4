// Where a calendar's names of time zones are looked up.
#pragma once

#include <memory>
#include <string_view>

#include "icalendar/time/time_zone.h"

namespace quorvel::icalendar {

// From any thread. Zones are null where the directory has none.
class ZoneDirectory {
public:
    virtual ~ZoneDirectory() = default;

    virtual std::shared_ptr<const TimeZone> named(std::string_view name) const = 0;
    // Whether the name is known as it is written, and not only in another case.
    virtual bool isExactName(std::string_view name) const = 0;
    // The fixed offset that a displayed name begins with, such as "(UTC+01:00) Berlin".
    virtual std::shared_ptr<const TimeZone> ofStatedOffset(std::string_view displayName) const = 0;
};

} // namespace quorvel::icalendar
