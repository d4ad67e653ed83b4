// Calendar arithmetic and captions in a chosen time zone and locale, with relative day words that
// follow the host's clock.
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

// Days are counted in the proleptic Gregorian calendar; a short date is printed in the calendar
// that the locale uses. Formatters and hour patterns are remembered. For one thread at a time.
//
// Before and after the AM/PM marker stands a plain space, as in the fixed patterns of the captions:
// the narrow one of newer locale data would give two spellings of the same time in one list.
class IcuDateServices final : public platform::DateServices {
public:
    // The clock must outlive this. `locale` is an identifier as canonicalLocale() gives it.
    IcuDateServices(const platform::Clock& clock, std::shared_ptr<const TimeZone> zone,
                    std::string locale);
    ~IcuDateServices() override;
    IcuDateServices(const IcuDateServices&) = delete;
    IcuDateServices& operator=(const IcuDateServices&) = delete;

    void setTimeZone(std::shared_ptr<const TimeZone> zone);
    void setLocale(const std::string& locale);
    // Goes before what the locale says, in patterns of the caller's own too.
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
