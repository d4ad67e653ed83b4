// An instant: seconds since the reference date, 2001-01-01 00:00:00 UTC.
#pragma once

#include <compare>

namespace quorvel::platform {

using NSTimeInterval = double; // seconds

struct NSDate {
    NSTimeInterval timeIntervalSinceReferenceDate = 0;

    NSDate dateByAddingTimeInterval(NSTimeInterval seconds) const {
        return {timeIntervalSinceReferenceDate + seconds};
    }
    NSTimeInterval timeIntervalSinceDate(NSDate other) const {
        return timeIntervalSinceReferenceDate - other.timeIntervalSinceReferenceDate;
    }
    auto operator<=>(const NSDate&) const = default; // NOLINT(modernize-use-nullptr): no pointer
};

// The reference date in Unix time.
inline constexpr NSTimeInterval referenceDateSince1970 = 978307200.0;

constexpr NSTimeInterval timeIntervalSince1970(NSDate date) {
    return date.timeIntervalSinceReferenceDate + referenceDateSince1970;
}

constexpr NSDate dateWithTimeIntervalSince1970(NSTimeInterval seconds) {
    return {seconds - referenceDateSince1970};
}

} // namespace quorvel::platform
