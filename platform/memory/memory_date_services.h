// The Gregorian calendar in one settable time zone, and English dates.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/date_services.h"

namespace quorvel::platform::memory {

// From that instant on the zone is so many seconds east of UTC.
struct OffsetChange {
    NSDate instant;
    int secondsFromUtc = 0;
};

// Short dates are "M/d/yy". Short times are "h:mm a" where the hour pattern holds an 'a', else
// "HH:mm". Date and time are joined by ", ". Patterns know y M d E H h m s a and quoted text;
// another letter is copied.
class MemoryDateServices : public DateServices {
public:
    // The clock outlives this object.
    explicit MemoryDateServices(const Clock& clock)
        : m_clock(clock) {}

    NSDateComponents components(unsigned units, NSDate date) const override;
    NSDate dateFromComponents(const NSDateComponents& components) const override;
    // The hour pattern for "j"; absent for every other skeleton.
    std::optional<std::string> dateFormatFromTemplate(std::string_view skeleton) const override;
    std::string stringFromDate(const NSDateFormatter& formatter, NSDate date) const override;

    void useTwelveHourClock() { hourPattern = "h a"; }
    void useTwentyFourHourClock() { hourPattern = "HH"; }

    int standardOffset = 0;            // seconds east of UTC before the first change
    std::vector<OffsetChange> changes; // earliest first
    std::optional<std::string> hourPattern = "h a";

    mutable std::vector<unsigned> units;             // requested of components(), in order
    mutable std::vector<NSDateFormatter> formatters; // that dates were formatted with, in order
    mutable std::vector<std::string> skeletons;      // that patterns were asked for, in order

private:
    int offsetAt(NSDate date) const;
    std::string formatted(std::string_view pattern, NSDate date) const;
    std::string shortDate(const NSDateFormatter& formatter, NSDate date) const;

    const Clock& m_clock;
};

} // namespace quorvel::platform::memory
