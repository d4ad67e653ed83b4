#include "freedesktop/dates/icu_date_services.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include "base/civil_calendar.h"
#include "freedesktop/dates/hour_pattern.h"
#include "freedesktop/dates/relative_day_words.h"
#include "freedesktop/dates/time_patterns.h"

namespace quorvel::freedesktop {
namespace {

using platform::NSDate;
using platform::NSDateComponents;
using platform::NSDateFormatter;
using platform::NSDateFormatterStyle;

constexpr double millisecondsPerSecond = 1000;
// About 15,000 years in both directions: ICU's lunar calendars are slow beyond.
constexpr double farthestPrintedSecond = 5e11;
constexpr std::size_t mostCached = 64;
constexpr std::size_t longestPattern = 256;

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

icu::UnicodeString fromUtf8(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

UDate printable(NSDate date) {
    const double seconds = platform::timeIntervalSince1970(date);
    if (std::isnan(seconds)) {
        return 0;
    }
    return std::clamp(seconds, -farthestPrintedSecond, farthestPrintedSecond) *
           millisecondsPerSecond;
}

icu::DateFormat::EStyle icuStyle(NSDateFormatterStyle style) {
    return style == NSDateFormatterStyle::none ? icu::DateFormat::kNone : icu::DateFormat::kShort;
}

// Whether the reform of 1582 may matter, also to the number of a week.
bool mayPrecedeReform(NSDate date) {
    constexpr double startOf1584 = -12'181'017'600;
    return platform::timeIntervalSince1970(date) < startOf1584;
}

// The platform's calendar does not have the reform. Costs the format new names of months and days.
void makeProleptic(icu::SimpleDateFormat& format) {
    const icu::Calendar* const calendar = format.getCalendar();
    if (dynamic_cast<const icu::GregorianCalendar*>(calendar) == nullptr) {
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> proleptic(calendar->clone());
    if (auto* const gregorian = dynamic_cast<icu::GregorianCalendar*>(proleptic.get())) {
        constexpr double beforeEverything = -1e18;
        gregorian->setGregorianChange(beforeEverything, status);
        format.adoptCalendar(proleptic.release());
    }
}

template <class Map>
void makeRoom(Map& map) {
    if (map.size() >= mostCached) {
        map.clear();
    }
}

} // namespace

// Caches formatters by what they print and patterns by their skeleton.
class IcuDateServices::Formats {
public:
    Formats(const std::string& locale, ClockFormat clockFormat)
        : m_locale(withClockFormat(icu::Locale::createFromName(locale.c_str()), clockFormat))
        , m_clockFormat(clockFormat) {}

    void setTimeZone(std::shared_ptr<const TimeZone> zone) { m_zone = std::move(zone); }

    std::optional<std::string> bestPattern(std::string_view skeleton);
    std::string printFixed(const std::string& pattern, NSDate date);
    std::string printStyles(NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle,
                            NSDate date);
    // `day` is relative to today.
    std::string printRelative(bool withTime, std::int64_t day, NSDate date);

private:
    using Format = std::unique_ptr<icu::SimpleDateFormat>;

    // The formatters use UTC and get the local time as if it were UTC, because ICU's time zone data
    // may be older than the machine's.
    std::string print(const Format& format, NSDate date) const {
        if (!format) {
            return {};
        }
        const NSDate shifted = date.dateByAddingTimeInterval(offsetAt(*m_zone, date));
        if (mayPrecedeReform(shifted)) {
            makeProleptic(*format);
        }
        icu::UnicodeString text;
        return utf8(format->format(printable(shifted), text));
    }

    static Format finished(Format format) {
        if (format) {
            format->setTimeZone(*icu::TimeZone::getGMT());
        }
        return format;
    }

    // Some locale data lack the AM/PM marker in 12-hour patterns.
    icu::UnicodeString withUsersClock(const icu::UnicodeString& pattern) const {
        return patternWithClock(pattern, m_clockFormat);
    }

    // Created from the styles, because these include the locale's number format for dates.
    Format styled(NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle) const {
        std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
            icuStyle(dateStyle), icuStyle(timeStyle), m_locale));
        auto* const simple = dynamic_cast<icu::SimpleDateFormat*>(format.get());
        if (simple == nullptr) {
            return nullptr;
        }
        static_cast<void>(format.release());
        Format result(simple);
        icu::UnicodeString pattern;
        result->applyPattern(withPlainSpaces(
            withUsersClock(withLocalesClock(result->toPattern(pattern), m_locale))));
        return finished(std::move(result));
    }

    icu::UnicodeString generatedPattern(std::string_view skeleton);

    icu::UnicodeString relativePattern(bool withTime, std::int64_t day) {
        if (!m_words) {
            m_words.emplace(m_locale);
        }
        return withTime ? withUsersClock(m_words->dateAndTimePattern(day))
                        : m_words->datePattern(day);
    }

    Format fixed(const std::string& pattern) const {
        UErrorCode status = U_ZERO_ERROR;
        auto format = std::make_unique<icu::SimpleDateFormat>(withUsersClock(fromUtf8(pattern)),
                                                              m_locale, status);
        return U_SUCCESS(status) ? finished(std::move(format)) : nullptr;
    }

    icu::Locale m_locale;
    ClockFormat m_clockFormat;
    std::shared_ptr<const TimeZone> m_zone;
    std::unique_ptr<icu::DateTimePatternGenerator> m_generator;
    std::optional<RelativeDayWords> m_words;
    std::map<std::string, std::optional<std::string>, std::less<>> m_bestPatterns;
    std::map<std::string, Format, std::less<>> m_byPattern;
    std::map<std::pair<NSDateFormatterStyle, NSDateFormatterStyle>, Format> m_byStyle;
    std::map<std::pair<bool, std::int64_t>, icu::UnicodeString> m_relativePatterns;
    Format m_relative; // has the pattern of the last relative day; null before the first
};

// Empty: none.
icu::UnicodeString IcuDateServices::Formats::generatedPattern(std::string_view skeleton) {
    if (skeleton == "j") {
        if (auto pattern = hourPattern(m_locale, m_clockFormat)) {
            return *std::move(pattern);
        }
    }
    UErrorCode status = U_ZERO_ERROR;
    if (!m_generator) {
        m_generator.reset(icu::DateTimePatternGenerator::createInstance(m_locale, status));
    }
    if (U_FAILURE(status) || !m_generator) {
        return {};
    }
    const icu::UnicodeString pattern =
        m_generator->getBestPattern(skeletonWithClock(fromUtf8(skeleton), m_clockFormat), status);
    return U_SUCCESS(status) ? pattern : icu::UnicodeString();
}

std::optional<std::string> IcuDateServices::Formats::bestPattern(std::string_view skeleton) {
    if (const auto found = m_bestPatterns.find(skeleton); found != m_bestPatterns.end()) {
        return found->second;
    }
    if (skeleton.size() > longestPattern) {
        return std::nullopt;
    }
    const icu::UnicodeString pattern = generatedPattern(skeleton);
    const auto result = pattern.isEmpty()
                            ? std::nullopt
                            : std::optional(utf8(withPlainSpaces(withUsersClock(pattern))));
    makeRoom(m_bestPatterns);
    return m_bestPatterns.emplace(skeleton, result).first->second;
}

std::string IcuDateServices::Formats::printFixed(const std::string& pattern, NSDate date) {
    auto found = m_byPattern.find(pattern);
    if (found == m_byPattern.end()) {
        if (pattern.size() > longestPattern) {
            return print(fixed(pattern), date);
        }
        makeRoom(m_byPattern);
        found = m_byPattern.emplace(pattern, fixed(pattern)).first;
    }
    return print(found->second, date);
}

std::string IcuDateServices::Formats::printStyles(NSDateFormatterStyle dateStyle,
                                                  NSDateFormatterStyle timeStyle, NSDate date) {
    Format& format = m_byStyle[{dateStyle, timeStyle}];
    if (!format) {
        format = styled(dateStyle, timeStyle);
    }
    return print(format, date);
}

std::string IcuDateServices::Formats::printRelative(bool withTime, std::int64_t day, NSDate date) {
    constexpr std::int64_t beyondAllWords = 10;
    day = std::clamp(day, -beyondAllWords, beyondAllWords);
    auto found = m_relativePatterns.find({withTime, day});
    if (found == m_relativePatterns.end()) {
        const std::pair key(withTime, day);
        found = m_relativePatterns.emplace(key, relativePattern(withTime, day)).first;
    }
    if (!m_relative) {
        m_relative = styled(NSDateFormatterStyle::shortStyle, NSDateFormatterStyle::shortStyle);
    }
    if (m_relative) {
        m_relative->applyPattern(found->second);
    }
    return print(m_relative, date);
}

IcuDateServices::IcuDateServices(const platform::Clock& clock, std::shared_ptr<const TimeZone> zone,
                                 std::string locale)
    : m_clock(clock)
    , m_zone(std::move(zone))
    , m_locale(std::move(locale)) {
    makeFormats();
}

IcuDateServices::~IcuDateServices() = default;

void IcuDateServices::setTimeZone(std::shared_ptr<const TimeZone> zone) {
    m_zone = std::move(zone);
    m_formats->setTimeZone(m_zone);
}

void IcuDateServices::setLocale(const std::string& locale) {
    m_locale = locale;
    makeFormats();
}

void IcuDateServices::setClockFormat(ClockFormat clockFormat) {
    m_clockFormat = clockFormat;
    makeFormats();
}

void IcuDateServices::makeFormats() {
    m_formats = std::make_unique<Formats>(m_locale, m_clockFormat);
    m_formats->setTimeZone(m_zone);
}

std::int64_t IcuDateServices::dayOf(NSDate date) const {
    const CivilTime time = localTime(*m_zone, date);
    return dayNumber(time.year, time.month, time.day);
}

NSDateComponents IcuDateServices::components(unsigned units, NSDate date) const {
    const CivilTime time = localTime(*m_zone, date);
    const auto wanted = [units](platform::NSCalendarUnit unit, int value) {
        return (units & unit) != 0 ? std::optional(value) : std::nullopt;
    };
    const int weekday = weekdayOf(dayNumber(time.year, time.month, time.day));
    return {wanted(platform::NSYearCalendarUnit, time.year),
            wanted(platform::NSMonthCalendarUnit, time.month),
            wanted(platform::NSDayCalendarUnit, time.day),
            wanted(platform::NSWeekdayCalendarUnit, weekday),
            wanted(platform::NSHourCalendarUnit, time.hour),
            wanted(platform::NSMinuteCalendarUnit, time.minute),
            wanted(platform::NSSecondCalendarUnit, time.second)};
}

NSDate IcuDateServices::dateFromComponents(const NSDateComponents& components) const {
    return dateOf(*m_zone, {components.year.value_or(1), components.month.value_or(1),
                            components.day.value_or(1), components.hour.value_or(0),
                            components.minute.value_or(0), components.second.value_or(0)});
}

std::optional<std::string>
IcuDateServices::dateFormatFromTemplate(std::string_view skeleton) const {
    return m_formats->bestPattern(skeleton);
}

std::string IcuDateServices::stringFromDate(const NSDateFormatter& formatter, NSDate date) const {
    if (formatter.dateFormat) {
        return m_formats->printFixed(*formatter.dateFormat, date);
    }
    const bool withDate = formatter.dateStyle != NSDateFormatterStyle::none;
    const bool withTime = formatter.timeStyle != NSDateFormatterStyle::none;
    if (!withDate && !withTime) {
        return {};
    }
    if (formatter.doesRelativeDateFormatting && withDate) {
        return m_formats->printRelative(withTime, dayOf(date) - dayOf(m_clock.now()), date);
    }
    return m_formats->printStyles(formatter.dateStyle, formatter.timeStyle, date);
}

} // namespace quorvel::freedesktop
