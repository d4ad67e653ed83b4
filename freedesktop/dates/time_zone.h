// A time zone by name, and the way between its wall clock and instants.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/civil_calendar.h"
#include "platform/ns_date.h"

namespace quorvel::freedesktop {

// Immutable and shared.
class TimeZone {
public:
    virtual ~TimeZone() = default;

    // Null where the name is known to nobody. Known are IANA names and their aliases, the names of
    // Windows, either behind a prefix such as "/freeassociation.sourceforge.net/", and the names
    // that Windows shows, such as "(UTC+01:00) Berlin". The name is never used as a path.
    static std::shared_ptr<const TimeZone> named(std::string_view name);
    // The fixed offset that a name begins with which Windows could show; null without one.
    static std::shared_ptr<const TimeZone> ofStatedOffset(std::string_view displayName);
    // Whether the name is known as it is written, and not only in another case. From any thread.
    static bool isExactName(std::string_view name);
    static std::shared_ptr<const TimeZone> utc();
    static std::shared_ptr<const TimeZone> host(); // the machine's own, read afresh

    virtual const std::string& identifier() const = 0; // IANA
    virtual int secondsFromGMT(platform::NSDate date) const = 0;
    virtual CivilTime civilTime(platform::NSDate date) const = 0; // fractions are cut off
    // A reading that does not exist moves forward by the gap; one that comes twice is the second.
    virtual platform::NSDate instant(const CivilTime& time) const = 0;
};

// Which editions of the zones' rules these are: another text, other rules.
std::string timeZoneRulesVersion();

} // namespace quorvel::freedesktop
