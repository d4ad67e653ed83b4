// Writes a vdir collection of made-up calendars, the same for the same arguments:
//   make_calendars DIR EVENTS [CALENDARS]
// Events lie within two years of 2026-03-10: 15 in 100 repeat weekly, every other of them without
// an end, 10 in 100 last all day, the others are in Berlin's or in New York's time.

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>

namespace {

constexpr int daysEachSide = 730;

struct Date {
    int year;
    unsigned month;
    unsigned day;
};

// The civil date so many days after 1970-01-01.
Date dateFromDays(std::int64_t days) {
    days += 719468; // to 0000-03-01
    const std::int64_t era = days / 146097;
    const auto dayOfEra = static_cast<unsigned>(days - era * 146097);
    const unsigned yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned shifted = (5 * dayOfYear + 2) / 153;
    const unsigned month = shifted < 10 ? shifted + 3 : shifted - 9;
    const unsigned day = dayOfYear - (153 * shifted + 2) / 5 + 1;
    return {static_cast<int>(yearOfEra + era * 400) + (month <= 2 ? 1 : 0), month, day};
}

std::string dateText(const Date& date) {
    char text[32];
    std::snprintf(text, sizeof text, "%04d%02u%02u", date.year, date.month, date.day);
    return text;
}

class Maker {
public:
    std::string event(int number) {
        constexpr std::int64_t middle = 20522; // 2026-03-10
        const std::int64_t day = middle + between(-daysEachSide, daysEachSide);
        std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Quorvel//bench//EN\r\n"
                           "BEGIN:VEVENT\r\nUID:event-" +
                           std::to_string(number) + "@example.org\r\nDTSTAMP:20260101T000000Z\r\n";
        text += times(day);
        if (between(1, 100) <= 15)
            text += rule();
        text += "SUMMARY:Meeting number " + std::to_string(number) + " about things\r\n";
        if (between(1, 2) == 1)
            text += "LOCATION:Room " + std::to_string(between(1, 400)) + "\r\n";
        text += "DESCRIPTION:" + std::string(static_cast<std::size_t>(between(10, 60)), 'x') +
                "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
        return text;
    }

private:
    int between(int low, int high) {
        return low + static_cast<int>(m_random() % static_cast<unsigned>(high - low + 1));
    }

    std::string rule() {
        const std::string end =
            between(1, 2) == 1 ? "" : ";COUNT=" + std::to_string(between(4, 60));
        return "RRULE:FREQ=WEEKLY" + end + "\r\n";
    }

    std::string times(std::int64_t day) {
        if (between(1, 100) <= 10)
            return "DTSTART;VALUE=DATE:" + dateText(dateFromDays(day)) +
                   "\r\nDTEND;VALUE=DATE:" + dateText(dateFromDays(day + between(1, 3))) + "\r\n";
        const std::string zone =
            between(1, 4) == 1 ? ";TZID=America/New_York:" : ";TZID=Europe/Berlin:";
        const int hour = between(7, 20);
        char start[16];
        char end[16];
        std::snprintf(start, sizeof start, "T%02d3000", hour);
        std::snprintf(end, sizeof end, "T%02d0000", hour + 1);
        const std::string date = dateText(dateFromDays(day));
        return "DTSTART" + zone + date + start + "\r\nDTEND" + zone + date + end + "\r\n";
    }

    std::mt19937 m_random{20260310};
};

bool readNumber(const char* text, int& number) {
    const std::string_view view = text;
    const auto [end, error] = std::from_chars(view.data(), view.data() + view.size(), number);
    return error == std::errc() && end == view.data() + view.size() && number > 0;
}

} // namespace

int main(int argc, char** argv) {
    int events = 0;
    int calendars = 5;
    if (argc < 3 || argc > 4 || !readNumber(argv[2], events) ||
        (argc == 4 && !readNumber(argv[3], calendars))) {
        std::cerr << "usage: make_calendars DIR EVENTS [CALENDARS]\n";
        return 2;
    }
    const std::filesystem::path top = argv[1];
    Maker maker;
    for (int i = 0; i < calendars; ++i) {
        const auto folder = top / ("calendar" + std::to_string(i + 1));
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "displayname") << "Calendar " << i + 1 << '\n';
    }
    for (int i = 0; i < events; ++i) {
        const auto folder = top / ("calendar" + std::to_string(i % calendars + 1));
        std::ofstream file(folder / ("event-" + std::to_string(i) + ".ics"), std::ios::binary);
        file << maker.event(i);
        if (!file.flush()) {
            std::cerr << "make_calendars: cannot write below " << top << '\n';
            return 1;
        }
    }
    return 0;
}
