// Captions in many locales around a clock that is years away from the machine's own, and days over
// clock changes.
#include "freedesktop/dates/icu_date_services.h"

#include <cctype>
#include <limits>
#include <memory>

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

#include "freedesktop/dates/clocks.h"
#include "freedesktop/dates/instant_text.h"

namespace quorvel::freedesktop {
namespace {

using platform::NSDate;
using platform::NSDateComponents;
using platform::NSDateFormatter;

constexpr auto none = platform::NSDateFormatterStyle::none;
constexpr auto shortStyle = platform::NSDateFormatterStyle::shortStyle;

// The clock stands at 9 o'clock on Tuesday, 15 July 2031.
class Fixture {
public:
    explicit Fixture(const std::string& locale, const char* zone = "Europe/Berlin")
        : m_zone(namedTimeZone(zone))
        , m_services(m_clock, m_zone, locale) {
        setNow("2031-07-15T09:00");
    }

    IcuDateServices& services() { return m_services; }
    void setNow(std::string_view text) { m_clock.setNow(instant(text)); }
    NSDate instant(std::string_view text) const { return parseInstant(text, *m_zone).value(); }

    std::string relative(std::string_view date) const {
        return m_services.stringFromDate({true, shortStyle, shortStyle, {}}, instant(date));
    }
    std::string relativeDay(std::string_view date) const {
        return m_services.stringFromDate({true, shortStyle, none, {}}, instant(date));
    }
    std::string time(std::string_view date) const {
        return m_services.stringFromDate({false, none, shortStyle, {}}, instant(date));
    }
    std::string dateAndTime(std::string_view date) const {
        return m_services.stringFromDate({false, shortStyle, shortStyle, {}}, instant(date));
    }
    std::string date(std::string_view date) const {
        return m_services.stringFromDate({false, shortStyle, none, {}}, instant(date));
    }
    std::string fixed(const char* pattern, std::string_view date) const {
        return m_services.stringFromDate({true, shortStyle, shortStyle, pattern}, instant(date));
    }

private:
    AdjustableClock m_clock;
    std::shared_ptr<const TimeZone> m_zone;
    IcuDateServices m_services;
};

struct Captions {
    const char* locale;
    const char* hour;
    const char* tomorrow;
    const char* tomorrowAllDay;
    const char* yesterday;
    const char* dayAfterTomorrow;
    const char* time;
    const char* dateAndTime;
    const char* date;
    const char* weekday;
    const char* weekday24;
    const char* weekday12;
};

class CaptionsOf : public testing::TestWithParam<Captions> {};

TEST_P(CaptionsOf, EveryKind) {
    const Captions& expected = GetParam();
    Fixture fixture(expected.locale);
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("j"), expected.hour);
    for (int round = 0; round < 2; ++round) { // made, and remembered
        EXPECT_EQ(fixture.relative("2031-07-16T14:30"), expected.tomorrow);
        EXPECT_EQ(fixture.relativeDay("2031-07-16"), expected.tomorrowAllDay);
        EXPECT_EQ(fixture.relative("2031-07-14T08:05"), expected.yesterday);
        EXPECT_EQ(fixture.relative("2031-07-17T08:05"), expected.dayAfterTomorrow);
        EXPECT_EQ(fixture.time("2031-07-15T14:30"), expected.time);
        EXPECT_EQ(fixture.dateAndTime("2031-07-15T14:30"), expected.dateAndTime);
        EXPECT_EQ(fixture.date("2031-07-15"), expected.date);
        EXPECT_EQ(fixture.fixed("EEEE", "2031-07-15"), expected.weekday);
        EXPECT_EQ(fixture.fixed("EEE, HH:mm", "2031-07-15T14:30"), expected.weekday24);
        EXPECT_EQ(fixture.fixed("EEE, h:mm a", "2031-07-15T14:30"), expected.weekday12);
    }
}

std::string shortDatePattern(const char* locale) {
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kShort, icu::Locale(locale)));
    icu::UnicodeString pattern;
    dynamic_cast<const icu::SimpleDateFormat&>(*format).toPattern(pattern);
    std::string text;
    return pattern.toUTF8String(text);
}

// Vietnamese is written in another way since a version of the Unicode locale data between those of
// ICU 72 and 76, and shortens the year of a date.
Captions vietnameseCaptions() {
    if (shortDatePattern("vi") == "d/M/yy") {
        return {"vi",       "HH 'giờ'",      "14:30 Ngày mai",
                "Ngày mai", "08:05 Hôm qua", "08:05 Ngày kia",
                "14:30",    "14:30 15/7/31", "15/7/31",
                "Thứ Ba",   "Th 3, 14:30",   "Th 3, 2:30 CH"};
    }
    return {"vi",
            "HH",
            "14:30, Ngày mai",
            "Ngày mai",
            "08:05, Hôm qua",
            "08:05, Ngày kia",
            "14:30",
            "14:30 15/07/2031",
            "15/07/2031",
            "Thứ Ba",
            "Th 3, 14:30",
            "Th 3, 2:30 CH"};
}

INSTANTIATE_TEST_SUITE_P(
    Locales, CaptionsOf,
    testing::Values(
        Captions{"en_US", "h a", "Tomorrow, 2:30 PM", "Tomorrow", "Yesterday, 8:05 AM",
                 "7/17/31, 8:05 AM", "2:30 PM", "7/15/31, 2:30 PM", "7/15/31", "Tuesday",
                 "Tue, 14:30", "Tue, 2:30 PM"},
        Captions{"en_GB", "HH", "Tomorrow, 14:30", "Tomorrow", "Yesterday, 08:05",
                 "17/07/2031, 08:05", "14:30", "15/07/2031, 14:30", "15/07/2031", "Tuesday",
                 "Tue, 14:30", "Tue, 2:30 pm"},
        Captions{"de_DE", "HH 'Uhr'", "morgen, 14:30", "morgen", "gestern, 08:05",
                 "übermorgen, 08:05", "14:30", "15.07.31, 14:30", "15.07.31", "Dienstag",
                 "Di., 14:30", "Di., 2:30 PM"},
        Captions{"fr_FR", "HH 'h'", "demain 14:30", "demain", "hier 08:05", "après-demain 08:05",
                 "14:30", "15/07/2031 14:30", "15/07/2031", "mardi", "mar., 14:30",
                 "mar., 2:30 PM"},
        Captions{"ja_JP", "H時", "明日 14:30", "明日", "昨日 8:05", "明後日 8:05", "14:30",
                 "2031/07/15 14:30", "2031/07/15", "火曜日", "火, 14:30", "火, 2:30 午後"},
        Captions{"ar_EG", "h a", "غدًا، ٢:٣٠ م", "غدًا", "أمس، ٨:٠٥ ص", "بعد الغد، ٨:٠٥ ص", "٢:٣٠ م",
                 "١٥\u200F/٧\u200F/٢٠٣١، ٢:٣٠ م", "١٥\u200F/٧\u200F/٢٠٣١", "الثلاثاء",
                 "الثلاثاء, ١٤:٣٠", "الثلاثاء, ٢:٣٠ م"},
        vietnameseCaptions(),
        Captions{"ko", "a h시", "내일 오후 2:30", "내일", "어제 오전 8:05", "모레 오전 8:05",
                 "오후 2:30", "31. 7. 15. 오후 2:30", "31. 7. 15.", "화요일", "화, 14:30",
                 "화, 2:30 오후"},
        Captions{"pt_BR", "HH", "Amanhã 14:30", "Amanhã", "Ontem 08:05", "Depois de amanhã 08:05",
                 "14:30", "15/07/2031, 14:30", "15/07/2031", "terça-feira", "ter., 14:30",
                 "ter., 2:30 PM"},
        Captions{"es_CO", "h a", "mañana, 2:30 p.\u00A0m.", "mañana", "ayer, 8:05 a.\u00A0m.",
                 "pasado mañana, 8:05 a.\u00A0m.", "2:30 p.\u00A0m.", "15/07/31, 2:30 p.\u00A0m.",
                 "15/07/31", "martes", "mar, 14:30", "mar, 2:30 p.\u00A0m."},
        Captions{"zh_TW", "ah時", "明天 下午2:30", "明天", "昨天 上午8:05", "後天 上午8:05",
                 "下午2:30", "2031/7/15 下午2:30", "2031/7/15", "星期二", "週二, 14:30",
                 "週二, 2:30 下午"},
        Captions{"en_US_POSIX", "h a", "Tomorrow, 2:30 PM", "Tomorrow", "Yesterday, 8:05 AM",
                 "7/17/31, 8:05 AM", "2:30 PM", "7/15/31, 2:30 PM", "7/15/31", "Tuesday",
                 "Tue, 14:30", "Tue, 2:30 PM"},
        Captions{"th_TH", "HH", "พรุ่งนี้ 14:30", "พรุ่งนี้", "เมื่อวาน 08:05", "มะรืนนี้ 08:05", "14:30",
                 "15/7/74 14:30", "15/7/74", "วันอังคาร", "อ., 14:30", "อ., 2:30 หลังเที่ยง"}),
    [](const auto& parameter) {
        std::string name;
        for (const char* c = parameter.param.locale; *c != '\0'; ++c) {
            name += std::isalnum(static_cast<unsigned char>(*c)) != 0 ? *c : '_';
        }
        return name;
    });

TEST(IcuDateServices, WordsFollowTheHostsClock) {
    Fixture fixture("en_US");
    EXPECT_EQ(fixture.relative("2031-07-15T23:59"), "Today, 11:59 PM");
    EXPECT_EQ(fixture.relative("2031-07-16T00:00"), "Tomorrow, 12:00 AM");
    fixture.setNow("2031-07-15T23:59:59");
    EXPECT_EQ(fixture.relative("2031-07-16T00:00"), "Tomorrow, 12:00 AM");
    fixture.setNow("2031-07-16T00:00");
    EXPECT_EQ(fixture.relative("2031-07-16T00:00"), "Today, 12:00 AM");
    EXPECT_EQ(fixture.relative("2031-07-15T23:59"), "Yesterday, 11:59 PM");
    fixture.setNow("1999-12-31T12:00");
    EXPECT_EQ(fixture.relativeDay("2000-01-01"), "Tomorrow");
    EXPECT_EQ(fixture.relativeDay("2031-07-16"), "7/16/31");
}

TEST(IcuDateServices, DaysAreThoseOfTheZone) {
    AdjustableClock clock;
    clock.setNow(*parseInstant("2031-07-15T20:00:00Z", *utcTimeZone()));
    IcuDateServices services(clock, namedTimeZone("America/New_York"), "en_GB");
    const NSDate date = *parseInstant("2031-07-16T03:00:00Z", *utcTimeZone());
    const NSDateFormatter formatter{true, shortStyle, shortStyle, {}};
    EXPECT_EQ(services.stringFromDate(formatter, date), "Today, 23:00");
    services.setTimeZone(namedTimeZone("Asia/Kathmandu"));
    EXPECT_EQ(services.stringFromDate(formatter, date), "Today, 08:45");
    services.setTimeZone(namedTimeZone("Europe/Berlin"));
    EXPECT_EQ(services.stringFromDate(formatter, date), "Tomorrow, 05:00");
}

TEST(IcuDateServices, LocaleMayChooseItsClock) {
    Fixture fixture("en_US@hours=h23");
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("j"), "HH");
    EXPECT_EQ(fixture.time("2031-07-15T14:30"), "14:30");
    EXPECT_EQ(fixture.relative("2031-07-16T14:30"), "Tomorrow, 14:30");
    EXPECT_EQ(fixture.dateAndTime("2031-07-15T14:30"), "7/15/31, 14:30");
    Fixture german("de_DE@hours=h12");
    EXPECT_EQ(german.relative("2031-07-16T14:30"), "morgen, 2:30 PM");
}

TEST(IcuDateServices, TheUsersTwentyFourHoursGoBeforeTheLocale) {
    Fixture fixture("en_US");
    fixture.services().setClockFormat(ClockFormat::twentyFourHours);
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("j"), "HH");
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("jmm"), "HH:mm");
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("hmma"), "HH:mm");
    EXPECT_EQ(fixture.time("2031-07-15T14:30"), "14:30");
    EXPECT_EQ(fixture.relative("2031-07-16T14:30"), "Tomorrow, 14:30");
    EXPECT_EQ(fixture.dateAndTime("2031-07-15T08:05"), "7/15/31, 08:05");
    EXPECT_EQ(fixture.date("2031-07-15"), "7/15/31");
    EXPECT_EQ(fixture.fixed("EEE, h:mm a", "2031-07-15T14:30"), "Tue, 14:30");
    EXPECT_EQ(fixture.fixed("EEE, HH:mm", "2031-07-15T14:30"), "Tue, 14:30");
    fixture.services().setClockFormat(ClockFormat::ofLocale);
    EXPECT_EQ(fixture.relative("2031-07-16T14:30"), "Tomorrow, 2:30 PM");
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("j"), "h a");
}

TEST(IcuDateServices, TheUsersTwelveHoursGoBeforeTheLocale) {
    Fixture fixture("de_DE");
    fixture.services().setClockFormat(ClockFormat::twelveHours);
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("j"), "h 'Uhr' a");
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("Hmm"), "h:mm a");
    EXPECT_EQ(fixture.time("2031-07-15T14:30"), "2:30 PM");
    EXPECT_EQ(fixture.relative("2031-07-16T14:30"), "morgen, 2:30 PM");
    EXPECT_EQ(fixture.dateAndTime("2031-07-15T14:30"), "15.07.31, 2:30 PM");
    EXPECT_EQ(fixture.fixed("EEE, HH:mm", "2031-07-15T14:30"), "Di., 02:30 PM");
    EXPECT_EQ(fixture.fixed("EEE, h:mm a", "2031-07-15T14:30"), "Di., 2:30 PM");
    fixture.services().setTimeZone(namedTimeZone("UTC"));
    EXPECT_EQ(fixture.time("2031-07-15T14:30"), "12:30 PM") << "and stay, whatever else changes";
    fixture.services().setLocale("fr_FR");
    EXPECT_EQ(fixture.time("2031-07-15T14:30"), "12:30 PM");
}

TEST(IcuDateServices, TheUsersClockGoesBeforeTheOneThatTheLocaleNames) {
    Fixture fixture("en_US@hours=h23");
    fixture.services().setClockFormat(ClockFormat::twelveHours);
    EXPECT_EQ(fixture.relative("2031-07-16T14:30"), "Tomorrow, 2:30 PM");
}

TEST(IcuDateServices, AnotherLocaleCounts) {
    Fixture fixture("en_US");
    EXPECT_EQ(fixture.relative("2031-07-16T14:30"), "Tomorrow, 2:30 PM");
    fixture.services().setLocale("de_DE");
    EXPECT_EQ(fixture.relative("2031-07-16T14:30"), "morgen, 14:30");
    EXPECT_EQ(fixture.fixed("EEEE", "2031-07-15"), "Dienstag");
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("j"), "HH 'Uhr'");
}

// The captions decide by the marker in the hour's pattern: in no locale may the two disagree.
TEST(IcuDateServices, EveryLocaleFollowsTheUsersClock) {
    std::int32_t count = 0;
    const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
    ASSERT_GT(count, 500);
    AdjustableClock clock;
    for (std::int32_t i = 0; i < count; ++i) {
        SCOPED_TRACE(locales[i].getName());
        IcuDateServices services(clock, utcTimeZone(), locales[i].getName());
        services.setClockFormat(ClockFormat::twelveHours);
        EXPECT_NE(services.dateFormatFromTemplate("j").value().find('a'), std::string::npos);
        const NSDateFormatter time{false, none, shortStyle, {}};
        const NSDate morning{9.5 * 3600};
        const NSDate evening{21.5 * 3600};
        EXPECT_NE(services.stringFromDate(time, morning), services.stringFromDate(time, evening));
        const std::string evenings12 = services.stringFromDate(time, evening);
        services.setClockFormat(ClockFormat::twentyFourHours);
        EXPECT_EQ(services.dateFormatFromTemplate("j").value().find('a'), std::string::npos);
        EXPECT_NE(services.stringFromDate(time, evening), evenings12);
        EXPECT_EQ(services.stringFromDate(time, evening).size(),
                  services.stringFromDate(time, morning.dateByAddingTimeInterval(3600)).size())
            << "no marker";
    }
}

TEST(IcuDateServices, PatternOverridesStyles) {
    Fixture fixture("en_US");
    EXPECT_EQ(fixture.fixed("yyyy-MM-dd HH:mm:ss", "2031-07-16T14:30:05"), "2031-07-16 14:30:05");
    EXPECT_EQ(fixture.fixed("'Tomorrow' ''HH''", "2031-07-16T14:30:05"), "Tomorrow '14'");
    EXPECT_EQ(fixture.fixed("", "2031-07-16"), "");
    const std::string longText(10000, 'x');
    EXPECT_EQ(fixture.fixed(("'" + longText + "'").c_str(), "2031-07-16"), longText);
}

TEST(IcuDateServices, NoStyleIsNothing) {
    Fixture fixture("en_US");
    EXPECT_EQ(fixture.services().stringFromDate({true, none, none, {}}, {0}), "");
    EXPECT_EQ(fixture.services().stringFromDate({}, {0}), "");
    EXPECT_EQ(fixture.services().stringFromDate({true, none, shortStyle, {}},
                                                fixture.instant("2031-07-16T14:30")),
              "2:30 PM");
}

TEST(IcuDateServices, TemplateWithoutPatternIsAbsent) {
    Fixture fixture("en_US");
    EXPECT_EQ(fixture.services().dateFormatFromTemplate(""), std::nullopt);
    EXPECT_EQ(fixture.services().dateFormatFromTemplate(std::string(1 << 20, 'j')), std::nullopt);
    EXPECT_EQ(fixture.services().dateFormatFromTemplate("yMd"), "M/d/y");
}

TEST(IcuDateServices, SplitsIntoTheRequestedFields) {
    Fixture fixture("th_TH", "America/New_York");
    constexpr unsigned day = platform::NSYearCalendarUnit | platform::NSMonthCalendarUnit |
                             platform::NSDayCalendarUnit | platform::NSWeekdayCalendarUnit;
    const NSDate date = *parseInstant("2026-03-08T07:00:30Z", *utcTimeZone());
    const NSDateComponents fields = fixture.services().components(day, date);
    EXPECT_EQ(fields.year, 2026);
    EXPECT_EQ(fields.month, 3);
    EXPECT_EQ(fields.day, 8);
    EXPECT_EQ(fields.weekday, 1);
    EXPECT_EQ(fields.hour, std::nullopt);
    EXPECT_EQ(fields.minute, std::nullopt);
    EXPECT_EQ(fields.second, std::nullopt);
    const NSDateComponents time = fixture.services().components(platform::NSHourCalendarUnit |
                                                                    platform::NSMinuteCalendarUnit |
                                                                    platform::NSSecondCalendarUnit,
                                                                date);
    EXPECT_EQ(time.year, std::nullopt);
    EXPECT_EQ(time.hour, 3);
    EXPECT_EQ(time.minute, 0);
    EXPECT_EQ(time.second, 30);
}

NSDateComponents midnight(int year, int month, int day) {
    return {year, month, day, std::nullopt, 0, 0, 0};
}

TEST(IcuDateServices, MidnightThatDoesNotExistMovesForward) {
    Fixture saoPaulo("pt_BR", "America/Sao_Paulo");
    EXPECT_EQ(saoPaulo.services().dateFromComponents(midnight(2018, 11, 4)),
              saoPaulo.instant("2018-11-04T01:00"));
    Fixture beirut("ar_EG", "Asia/Beirut");
    EXPECT_EQ(beirut.services().dateFromComponents(midnight(2022, 3, 27)),
              *parseInstant("2022-03-26T22:00:00Z", *utcTimeZone()));
}

TEST(IcuDateServices, AmbiguousTimeIsTheSecond) {
    Fixture berlin("de_DE");
    const NSDateComponents fields{2026, 10, 25, std::nullopt, 2, 30, 0};
    EXPECT_EQ(berlin.services().dateFromComponents(fields),
              *parseInstant("2026-10-25T01:30:00Z", *utcTimeZone()));
}

TEST(IcuDateServices, DaysOverClockChangesHaveTheirLength) {
    Fixture berlin("de_DE");
    const auto start = [&berlin](int day, int month) {
        return berlin.services().dateFromComponents(midnight(2026, month, day));
    };
    EXPECT_EQ(start(30, 3).timeIntervalSinceDate(start(29, 3)), 82800);
    EXPECT_EQ(start(26, 10).timeIntervalSinceDate(start(25, 10)), 90000);
}

TEST(IcuDateServices, AbsentFieldsAreTheFirst) {
    Fixture utc("en_US", "UTC");
    EXPECT_EQ(utc.services().dateFromComponents({}), utc.instant("0001-01-01"));
    NSDateComponents year;
    year.year = 2026;
    year.weekday = 5;
    EXPECT_EQ(utc.services().dateFromComponents(year), utc.instant("2026-01-01"));
}

TEST(IcuDateServices, DatesBeforeTheReformAreGregorian) {
    Fixture utc("en_US", "UTC");
    EXPECT_EQ(utc.fixed("yyyy-MM-dd EEE", "1582-10-10"), "1582-10-10 Sun");
    EXPECT_EQ(utc.fixed("yyyy-MM-dd EEE", "0001-01-01"), "0001-01-01 Mon");
}

std::string inManyForms(const Fixture& fixture, const char* date) {
    return fixture.dateAndTime(date) + '|' + fixture.relative(date) + '|' + fixture.date(date) +
           '|' + fixture.fixed("GGGG yyyy MMMM d EEEE w e Y", date);
}

// A format prints later dates by the calendar that has the reform until it prints one before it.
void expectReformDoesNotMatter(const std::string& locale, const char* date) {
    const Fixture fixture(locale, "UTC");
    const std::string before = inManyForms(fixture, date);
    inManyForms(fixture, "1500-01-01");
    EXPECT_EQ(inManyForms(fixture, date), before) << locale << ' ' << date;
}

TEST(IcuDateServices, EarlyDatesLeaveLaterOnesAsTheyAre) {
    std::int32_t count = 0;
    const icu::Locale* const locales = icu::Locale::getAvailableLocales(count);
    for (std::int32_t i = 0; i < count; ++i) {
        expectReformDoesNotMatter(locales[i].getName(), "2026-03-10T10:00");
    }
    for (const char* const locale :
         {"en_US", "de_DE", "fa_IR", "th_TH", "ja_JP@calendar=japanese", "zh_TW@calendar=roc",
          "en_GB@calendar=buddhist", "de_DE@calendar=iso8601", "he_IL@calendar=hebrew"}) {
        for (const char* const date : {"1584-01-01", "1584-12-31", "1700-03-01", "9999-12-31"}) {
            expectReformDoesNotMatter(locale, date);
        }
    }
}

TEST(IcuDateServices, DatesBetweenTheReformAndItsNewYearAreGregorian) {
    Fixture utc("en_US", "UTC");
    EXPECT_EQ(utc.fixed("yyyy-MM-dd EEE D", "1582-12-31"), "1582-12-31 Fri 365");
    EXPECT_EQ(utc.fixed("yyyy-MM-dd EEE D", "1584-01-01"), "1584-01-01 Sun 1");
}

TEST(IcuDateServices, PrintsWhateverItIsGiven) {
    for (const char* locale : {"en_US", "ar_SA", "fa_IR", "zh_CN@calendar=chinese"}) {
        Fixture fixture(locale);
        for (const double seconds :
             {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
              std::numeric_limits<double>::quiet_NaN(), 1e300}) {
            EXPECT_NE(
                fixture.services().stringFromDate({true, shortStyle, shortStyle, {}}, {seconds}),
                "");
        }
    }
}

} // namespace
} // namespace quorvel::freedesktop
