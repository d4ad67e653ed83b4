// Calendar arithmetic and formatted dates in a time zone and locale. Relative day words follow the
// platform's clock.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/dates/clock_format.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/clock.h"
#include "platform/date_services.h"

namespace quorvel::freedesktop {

// Counts days in the proleptic Gregorian calendar, but prints a short date in the calendar of the
// locale. Caches formatters and patterns.
//
// Puts a plain space beside the AM/PM marker, as the fixed patterns of the widget do: the narrow
// space of newer locale data would give two spellings of the same time in one list.
class IcuDateServices final : public platform::DateServices {
public:
    // The clock must outlive the object. `locale` is in the form of canonicalLocale().
    IcuDateServices(const platform::Clock& clock, std::shared_ptr<const TimeZone> zone,
                    std::string locale);
    ~IcuDateServices() override;
    IcuDateServices(const IcuDateServices&) = delete;
    IcuDateServices& operator=(const IcuDateServices&) = delete;

    void setTimeZone(std::shared_ptr<const TimeZone> zone);
    void setLocale(const std::string& locale);
    // Overrides the locale, also in patterns that the caller supplies.
    void setClockFormat(ClockFormat clockFormat);

    platform::NSDateComponents components(unsigned units, platform::NSDate date) const override;
    platform::NSDate
    dateFromComponents(const platform::NSDateComponents& components) const override;
    std::optional<std::string> dateFormatFromTemplate(std::string_view skeleton) const override;
    std::string stringFromDate(const platform::NSDateFormatter& formatter,
                               platform::NSDate date) const override;

private:
    class Formats;

    void makeFormats();
    std::int64_t dayOf(platform::NSDate date) const;

    const platform::Clock& m_clock;
    std::shared_ptr<const TimeZone> m_zone;
    std::string m_locale;
    ClockFormat m_clockFormat = ClockFormat::ofLocale;
    std::unique_ptr<Formats> m_formats;
};

} // namespace quorvel::freedesktop
