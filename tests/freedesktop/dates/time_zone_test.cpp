// Zones by all the names that calendars use, and wall clocks over their changes.
#include "freedesktop/dates/time_zone.h"

#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <unicode/strenum.h>
#include <unicode/timezone.h>

#include "base/ascii_text.h"

namespace quorvel::freedesktop {
namespace {

std::string identifierOf(std::string_view name) {
    const auto zone = namedTimeZone(name);
    return zone ? zone->identifier() : "unknown";
}

platform::NSDate unixDate(double seconds) {
    return platform::dateWithTimeIntervalSince1970(seconds);
}

platform::NSDate utcDate(const CivilTime& time) {
    return dateOf(*utcTimeZone(), time);
}

TEST(TimeZone, IsKnownByItsNameAndAliases) {
    EXPECT_EQ(identifierOf("Europe/Berlin"), "Europe/Berlin");
    EXPECT_EQ(identifierOf("europe/berlin"), "Europe/Berlin");
    EXPECT_EQ(identifierOf("US/Eastern"), "US/Eastern");
    EXPECT_EQ(identifierOf("Asia/Kolkata"), "Asia/Kolkata");
    EXPECT_EQ(identifierOf("Asia/Calcutta"), "Asia/Calcutta");
    EXPECT_EQ(identifierOf("America/Argentina/Buenos_Aires"), "America/Argentina/Buenos_Aires");
    EXPECT_EQ(identifierOf("Etc/GMT+5"), "Etc/GMT+5");
    EXPECT_EQ(identifierOf("UTC"), "UTC");
    EXPECT_EQ(identifierOf("GMT"), "GMT");
    EXPECT_EQ(identifierOf("EST5EDT"), "EST5EDT");
    EXPECT_EQ(identifierOf(" Europe/Madrid "), "Europe/Madrid");
}

TEST(TimeZone, IsKnownByItsNameOnWindows) {
    EXPECT_EQ(identifierOf("W. Europe Standard Time"), "Europe/Berlin");
    EXPECT_EQ(identifierOf("Eastern Standard Time"), "America/New_York");
    EXPECT_EQ(identifierOf("Central Standard Time (Mexico)"), "America/Mexico_City");
    EXPECT_EQ(identifierOf("Tokyo Standard Time"), "Asia/Tokyo");
}

TEST(TimeZone, IsKnownByItsDisplayNameOnWindows) {
    EXPECT_EQ(identifierOf("(UTC+01:00) Amsterdam, Berlin, Bern, Rom, Stockholm, Wien"),
              "Europe/Berlin");
    EXPECT_EQ(identifierOf("(GMT-05:00) Eastern Time (US & Canada)"), "America/New_York");
    EXPECT_EQ(identifierOf("(UTC+01:00) Nowhere"), "unknown");
}

TEST(TimeZone, MayBeTheOffsetOfAnUnknownDisplayName) {
    EXPECT_EQ(timeZoneOfStatedOffset("(UTC-03:30) Nowhere")->offsetAt(0), -12600);
    EXPECT_EQ(timeZoneOfStatedOffset("(UTC) Nowhere")->offsetAt(0), 0);
    EXPECT_EQ(timeZoneOfStatedOffset("Nowhere"), nullptr);
}

TEST(TimeZone, IsKnownBehindAPrefix) {
    EXPECT_EQ(identifierOf("/freeassociation.sourceforge.net/Europe/Madrid"), "Europe/Madrid");
    EXPECT_EQ(identifierOf("/freeassociation.sourceforge.net/Tzfile/America/Argentina/Cordoba"),
              "America/Argentina/Cordoba");
    EXPECT_EQ(identifierOf("/mozilla.org/20050126_1/Europe/Berlin"), "Europe/Berlin");
    EXPECT_EQ(identifierOf("/softwarestudio.org/Olson_20011030_5/America/New_York"),
              "America/New_York");
    EXPECT_EQ(identifierOf("/example.org/W. Europe Standard Time"), "Europe/Berlin");
    EXPECT_EQ(identifierOf("tzone://Microsoft/Utc"), "UTC");
    EXPECT_EQ(identifierOf("tzone://Microsoft/Custom"), "unknown");
}

TEST(TimeZone, MayBeAFixedOffset) {
    EXPECT_EQ(identifierOf("GMT+5:30"), "GMT+05:30");
    EXPECT_EQ(identifierOf("UTC-03"), "GMT-03:00");
    EXPECT_EQ(identifierOf("GMT+0530"), "GMT+05:30");
    EXPECT_EQ(identifierOf("UTC+00:00"), "GMT");
    EXPECT_EQ(offsetAt(*namedTimeZone("GMT+5:30"), unixDate(0)), 19800);
    EXPECT_EQ(offsetAt(*namedTimeZone("UTC-3"), unixDate(0)), -10800);
    EXPECT_EQ(offsetAt(*namedTimeZone("Etc/GMT+5"), unixDate(0)), -18000);
    for (const char* name : {"GMT+", "GMT+25", "GMT+5:7", "GMT+5:60", "GMT+123", "GMT+1:000",
                             "GMT5", "UTC+-3", "GMT+:30"}) {
        EXPECT_EQ(identifierOf(name), "unknown") << name;
    }
}

TEST(TimeZone, KnowsANameInAnotherCaseFromTheExactOne) {
    for (const char* name : {"Europe/Berlin", "US/Eastern", "EST5EDT", "CET", "UTC", "GMT+5:30",
                             "UTC-3", "W. Europe Standard Time", "/example.org/1/Europe/Berlin",
                             "/example.org/W. Europe Standard Time", " Europe/Madrid "}) {
        EXPECT_TRUE(isExactTimeZoneName(name)) << name;
    }
    for (const char* name : {"europe/berlin", "EST5edt", "cet", "Utc", "gmt+5:30",
                             "/example.org/1/europe/berlin", "tzone://Microsoft/Utc"}) {
        EXPECT_FALSE(isExactTimeZoneName(name)) << name;
        EXPECT_NE(namedTimeZone(name), nullptr) << name;
    }
    for (const char* name : {"", "Custom", "w. europe standard time", "Europe/Atlantis"}) {
        EXPECT_FALSE(isExactTimeZoneName(name)) << name;
        EXPECT_EQ(namedTimeZone(name), nullptr) << name;
    }
}

// Whichever way it is found by: as it is written, or in another case.
TEST(TimeZone, EveryNameOfIcuIsExactInItsOwnSpelling) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::StringEnumeration> names(
        icu::TimeZone::createTimeZoneIDEnumeration(UCAL_ZONE_TYPE_ANY, nullptr, nullptr, status));
    ASSERT_TRUE(U_SUCCESS(status));
    int exact = 0;
    int inexact = 0;
    while (const char* const name = names->next(nullptr, status)) {
        const std::string text(name);
        const std::string lower = asciiLowerCase(text);
        if (text == "Etc/Unknown" || !isExactTimeZoneName(text)) {
            EXPECT_TRUE(text == "Etc/Unknown" || text.size() == 3) << text; // ambiguous
            ++inexact;
            continue;
        }
        ++exact;
        EXPECT_EQ(isExactTimeZoneName(lower), lower == text) << text;
    }
    EXPECT_GT(exact, 500);
    EXPECT_LT(inexact, 30);
}

TEST(TimeZone, UnknownNamesAreRefused) {
    for (const char* name :
         {"", " ", "/", "Europe/Atlantis", "../../etc/passwd", "/../../../etc/localtime", "CST",
          "BST", "PST", "Etc/Unknown", "Europe/Berlin;rm", "Europe\\Berlin", "Europe/Berlin\n",
          "Xx/Europe/Berlin", "Europe/B\xC3\xA9rlin", "Custom", "(UTC+01:00)"}) {
        EXPECT_EQ(namedTimeZone(name), nullptr) << name;
    }
    EXPECT_EQ(namedTimeZone(std::string(1 << 20, '/')), nullptr);
    EXPECT_EQ(namedTimeZone(std::string("Europe/Berlin\0x", 15)), nullptr);
}

TEST(TimeZone, IsRemembered) {
    EXPECT_EQ(namedTimeZone("Europe/Paris"), namedTimeZone("Europe/Paris"));
}

TEST(TimeZone, HostZoneIsKnown) {
    ASSERT_NE(hostTimeZone(), nullptr);
    EXPECT_FALSE(hostTimeZone()->identifier().empty());
}

TEST(TimeZone, OffsetsFollowTheClockChanges) {
    const auto berlin = namedTimeZone("Europe/Berlin");
    EXPECT_EQ(offsetAt(*berlin, utcDate({2026, 1, 1})), 3600);
    EXPECT_EQ(offsetAt(*berlin, utcDate({2026, 3, 29, 0, 59, 59})), 3600);
    EXPECT_EQ(offsetAt(*berlin, utcDate({2026, 3, 29, 1, 0, 0})), 7200);
    EXPECT_EQ(offsetAt(*berlin, utcDate({2100, 7, 1})), 7200);
    EXPECT_EQ(offsetAt(*namedTimeZone("Asia/Kathmandu"), utcDate({2026, 1, 1})), 20700);
    EXPECT_EQ(offsetAt(*namedTimeZone("Australia/Lord_Howe"), utcDate({2026, 1, 1})), 39600);
    EXPECT_EQ(offsetAt(*namedTimeZone("Australia/Lord_Howe"), utcDate({2026, 7, 1})), 37800);
}

TEST(TimeZone, ReadsTheWallClock) {
    const auto newYork = namedTimeZone("America/New_York");
    EXPECT_EQ(localTime(*newYork, utcDate({2026, 3, 8, 6, 59, 59})),
              (CivilTime{2026, 3, 8, 1, 59, 59}));
    EXPECT_EQ(localTime(*newYork, utcDate({2026, 3, 8, 7, 0, 0})),
              (CivilTime{2026, 3, 8, 3, 0, 0}));
    EXPECT_EQ(localTime(*namedTimeZone("Asia/Kathmandu"), utcDate({2025, 12, 31, 18, 15, 0})),
              (CivilTime{2026, 1, 1, 0, 0, 0}));
    EXPECT_EQ(localTime(*utcTimeZone(), unixDate(-0.25)), (CivilTime{1969, 12, 31, 23, 59, 59}));
    EXPECT_EQ(localTime(*utcTimeZone(), unixDate(59.999)), (CivilTime{1970, 1, 1, 0, 0, 59}));
}

TEST(TimeZone, AReadingInTheGapMovesForward) {
    const auto berlin = namedTimeZone("Europe/Berlin");
    EXPECT_EQ(dateOf(*berlin, {2026, 3, 29, 2, 30, 0}), utcDate({2026, 3, 29, 1, 30, 0}));
    const auto saoPaulo = namedTimeZone("America/Sao_Paulo");
    EXPECT_EQ(dateOf(*saoPaulo, {2018, 11, 4, 0, 0, 0}), utcDate({2018, 11, 4, 3, 0, 0}));
    EXPECT_EQ(localTime(*saoPaulo, dateOf(*saoPaulo, {2018, 11, 4, 0, 0, 0})),
              (CivilTime{2018, 11, 4, 1, 0, 0}));
    const auto beirut = namedTimeZone("Asia/Beirut");
    EXPECT_EQ(localTime(*beirut, dateOf(*beirut, {2022, 3, 27, 0, 0, 0})),
              (CivilTime{2022, 3, 27, 1, 0, 0}));
    const auto lordHowe = namedTimeZone("Australia/Lord_Howe");
    EXPECT_EQ(localTime(*lordHowe, dateOf(*lordHowe, {2026, 10, 4, 2, 10, 0})),
              (CivilTime{2026, 10, 4, 2, 40, 0}));
}

TEST(TimeZone, ADayThatNeverWasMovesForward) {
    const auto apia = namedTimeZone("Pacific/Apia");
    EXPECT_EQ(localTime(*apia, dateOf(*apia, {2011, 12, 30, 0, 0, 0})),
              (CivilTime{2011, 12, 31, 0, 0, 0}));
    EXPECT_EQ(dateOf(*apia, {2011, 12, 31, 0, 0, 0}), dateOf(*apia, {2011, 12, 29, 24, 0, 0}));
}

TEST(TimeZone, AReadingThatComesTwiceIsTheSecond) {
    const auto berlin = namedTimeZone("Europe/Berlin");
    EXPECT_EQ(dateOf(*berlin, {2026, 10, 25, 2, 30, 0}), utcDate({2026, 10, 25, 1, 30, 0}));
    const auto lordHowe = namedTimeZone("Australia/Lord_Howe");
    EXPECT_EQ(dateOf(*lordHowe, {2026, 4, 5, 1, 45, 0}), utcDate({2026, 4, 4, 15, 15, 0}));
}

TEST(TimeZone, FieldsCarryOver) {
    const auto utc = utcTimeZone();
    EXPECT_EQ(dateOf(*utc, {2026, 1, 31, 25, 0, 0}), dateOf(*utc, {2026, 2, 1, 1, 0, 0}));
    EXPECT_EQ(dateOf(*utc, {2026, 14, 1, 0, 0, -1}), dateOf(*utc, {2027, 1, 31, 23, 59, 59}));
}

TEST(TimeZone, ReachesOverTheWholeCalendar) {
    const auto berlin = namedTimeZone("Europe/Berlin");
    for (const int year : {1, 1582, 1893, 2037, 2038, 9999}) {
        const CivilTime time{year, 10, 10, 12, 34, 56};
        EXPECT_EQ(localTime(*berlin, dateOf(*berlin, time)), time) << year;
    }
    EXPECT_EQ(dateOf(*utcTimeZone(), {1, 1, 1}), unixDate(-62135596800.0));
    EXPECT_EQ(dateOf(*utcTimeZone(), {9999, 12, 31, 23, 59, 59}), unixDate(253402300799.0));
}

TEST(TimeZone, SurvivesInstantsOutOfReach) {
    const auto berlin = namedTimeZone("Europe/Berlin");
    for (const double seconds :
         {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300}) {
        const CivilTime time = localTime(*berlin, {seconds});
        EXPECT_GE(time.month, 1);
        EXPECT_LE(time.month, 12);
        EXPECT_LT(offsetAt(*berlin, {seconds}), 86400);
    }
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    EXPECT_GT(dateOf(*berlin, {most, most, most, most, most, most}), unixDate(9e12));
    EXPECT_LT(dateOf(*berlin, {least, least, least, least, least, least}), unixDate(-9e12));
}

} // namespace
} // namespace quorvel::freedesktop
