#include "freedesktop/dates/system_time_zone.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string_view>

#include <glib.h>

#include "base/ascii_text.h"
#include "base/civil_calendar.h"
#include "base/integer_division.h"
#include "base/time_units.h"
#include "freedesktop/dates/recent_offsets.h"

namespace quorvel::freedesktop {
namespace {

// GLib evaluates rules up to the year 2999. Later years equal those 400 years before, which is a
// whole number of weeks.
constexpr std::int64_t secondsPerCycle = 146097 * secondsPerDay;
constexpr std::int64_t lastEvaluated = 26179200000; // in the year 2799
// No offset is larger, not even when a zone moves to the other side of the date line; and no zone
// changes twice within that time before and after an instant.
constexpr std::int64_t margin = 30 * 3600;

struct ZoneUnref {
    void operator()(GTimeZone* zone) const { g_time_zone_unref(zone); }
};
using ZoneHandle = std::unique_ptr<GTimeZone, ZoneUnref>;

class SystemTimeZone final : public TimeZone {
public:
    SystemTimeZone(ZoneHandle zone, std::string identifier)
        : m_zone(std::move(zone))
        , m_identifier(std::move(identifier)) {}

    const std::string& identifier() const override { return m_identifier; }

    int offsetAt(std::int64_t instant) const override {
        if (instant > lastEvaluated) {
            instant -=
                (floorDivision(instant - lastEvaluated, secondsPerCycle) + 1) * secondsPerCycle;
        }
        const std::int64_t block = RecentOffsets::blockOf(instant);
        const auto recent = m_recent.find(block);
        return recent ? *recent : findOffset(instant, block);
    }

    std::int64_t instant(const CivilTime& localTime) const override {
        return instantOf(civilSeconds(localTime));
    }

private:
    int intervalAt(std::int64_t instant) const {
        return g_time_zone_find_interval(m_zone.get(), G_TIME_TYPE_UNIVERSAL, instant);
    }
    int findOffset(std::int64_t instant, std::int64_t block) const {
        const int interval = intervalAt(instant);
        const int offset = interval < 0 ? 0 : g_time_zone_get_offset(m_zone.get(), interval);
        if (intervalAt(RecentOffsets::firstInstantOf(block)) == interval &&
            intervalAt(RecentOffsets::lastInstantOf(block)) == interval) {
            m_recent.remember(block, offset);
        }
        return offset;
    }

    std::int64_t instantOf(std::int64_t local) const {
        const int before = offsetAt(local - margin);
        const std::int64_t late = local - offsetAt(local + margin);
        const std::int64_t early = local - before;
        if (late + offsetAt(late) == local && late >= early) {
            return late;
        }
        // A valid local time, or one in a gap, to which the offset before the gap applies.
        return late + offsetAt(late) == local && early + offsetAt(early) != local ? late : early;
    }

    ZoneHandle m_zone;
    std::string m_identifier;
    mutable RecentOffsets m_recent;
};

bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

bool mayBeInPart(char c) {
    return isAsciiLetterOrDigit(c) || c == '_' || c == '+' || c == '-';
}

bool isPlainName(std::string_view name) {
    constexpr std::size_t longest = 64;
    const bool hasEmptyPart = name.find("//") != std::string_view::npos || name.ends_with('/');
    return !name.empty() && name.size() <= longest && isCapital(name.front()) && !hasEmptyPart &&
           std::all_of(name.begin(), name.end(), [](char c) { return c == '/' || mayBeInPart(c); });
}

// The folder that GLib reads zones from.
std::string zoneFolder() {
    const char* const folder = g_getenv("TZDIR");
    return folder != nullptr ? folder : "/usr/share/zoneinfo";
}

} // namespace

std::string systemTimeZoneEdition() {
    constexpr std::size_t longest = 64;
    std::ifstream rules(zoneFolder() + "/tzdata.zi");
    std::string line;
    std::getline(rules, line);
    return line.substr(0, longest);
}

std::shared_ptr<const TimeZone> makeSystemTimeZone(const std::string& name) {
    if (!isPlainName(name)) {
        return nullptr;
    }
    ZoneHandle zone(g_time_zone_new_identifier(name.c_str()));
    if (!zone || name != g_time_zone_get_identifier(zone.get())) {
        return nullptr;
    }
    return std::make_shared<SystemTimeZone>(std::move(zone), name);
}

} // namespace quorvel::freedesktop
