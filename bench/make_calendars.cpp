// Writes made-up calendars, the same for the same arguments:
//   make_calendars files|vdir DIR EVENTS [CALENDARS]
// as one .ics file a calendar, or as a folder a calendar with one file an event.
//
// The events lie within the three years before 2026-03-10 and the year after. 10 in 100 last all
// day, 25 are in New York's time and the others in Berlin's. 15 repeat: 70 in 100 of these weekly
// and 10 daily, 4 to 40 times, 19 yearly without an end, and one weekly without an end; one in five
// of these leaves an occurrence out, one in five moves one. An event takes some 500 bytes.

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::int64_t today = 20522; // 2026-03-10, in days since 1970
constexpr int daysBefore = 3 * 365;
constexpr int daysAfter = 365;

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

std::string dateText(std::int64_t day) {
    const Date date = dateFromDays(day);
    char text[32];
    std::snprintf(text, sizeof text, "%04d%02u%02u", date.year, date.month, date.day);
    return text;
}

// As the programs write them that fold at 75 bytes.
std::string folded(const std::string& line) {
    constexpr std::size_t longest = 75;
    std::string text = line.substr(0, longest);
    for (std::size_t at = longest; at < line.size(); at += longest - 1) {
        text += "\r\n " + line.substr(at, longest - 1);
    }
    return text + "\r\n";
}

constexpr std::string_view zoneDefinitions =
    "BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\nBEGIN:DAYLIGHT\r\nTZOFFSETFROM:+0100\r\n"
    "TZOFFSETTO:+0200\r\nTZNAME:CEST\r\nDTSTART:19700329T020000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nEND:DAYLIGHT\r\nBEGIN:STANDARD\r\n"
    "TZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nTZNAME:CET\r\nDTSTART:19701025T030000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n"
    "BEGIN:VTIMEZONE\r\nTZID:America/New_York\r\nBEGIN:DAYLIGHT\r\nTZOFFSETFROM:-0500\r\n"
    "TZOFFSETTO:-0400\r\nTZNAME:EDT\r\nDTSTART:20070311T020000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\r\nEND:DAYLIGHT\r\nBEGIN:STANDARD\r\n"
    "TZOFFSETFROM:-0400\r\nTZOFFSETTO:-0500\r\nTZNAME:EST\r\nDTSTART:20071104T020000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";

std::string calendarText(std::string_view events) {
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Quorvel//bench//EN\r\n";
    text += zoneDefinitions;
    text += events;
    return text + "END:VCALENDAR\r\n";
}

class Maker {
public:
    // The event and, where one of its occurrences is moved, its override.
    std::string event(int number) {
        Times times;
        times.day = today + between(-daysBefore, daysAfter);
        times.isAllDay = chance(10);
        times.zone = chance(25) ? "America/New_York" : "Europe/Berlin";
        times.hour = between(7, 19);
        const std::string uid =
            "UID:" + hex(8) + "-" + hex(4) + "-4" + hex(3) + "-a" + hex(3) + "-" + hex(12) + "\r\n";
        const std::string about = description(number);
        std::string text = begin(uid) + span(times);
        std::string moved;
        if (chance(15)) {
            const int step = addRule(text);
            if (chance(20)) {
                text += instant("EXDATE", times, 2 * step);
            }
            if (chance(20)) {
                moved = begin(uid) + instant("RECURRENCE-ID", times, step);
                times.day += step;
                times.hour = 20;
                moved += span(times) + about;
            }
        }
        return text + about + moved;
    }

private:
    struct Times {
        std::int64_t day = 0;
        bool isAllDay = false;
        std::string zone;
        int hour = 0;
    };

    int between(int low, int high) {
        return low + static_cast<int>(m_random() % static_cast<unsigned>(high - low + 1));
    }
    bool chance(int percent) { return between(1, 100) <= percent; }

    std::string hex(int digits) {
        std::string text;
        for (int i = 0; i < digits; ++i) {
            text += "0123456789abcdef"[m_random() % 16];
        }
        return text;
    }

    static std::string begin(const std::string& uid) {
        return "BEGIN:VEVENT\r\n" + uid +
               "DTSTAMP:20260101T000000Z\r\nCREATED:20250605T081500Z\r\n"
               "LAST-MODIFIED:20251224T101112Z\r\nSEQUENCE:1\r\n";
    }

    static std::string instant(const std::string& name, const Times& times, int daysLater) {
        const std::string date = dateText(times.day + daysLater);
        if (times.isAllDay) {
            return name + ";VALUE=DATE:" + date + "\r\n";
        }
        char clock[16];
        std::snprintf(clock, sizeof clock, "T%02d3000", times.hour);
        return name + ";TZID=" + times.zone + ":" + date + clock + "\r\n";
    }

    static std::string span(const Times& times) {
        const std::string start = instant("DTSTART", times, 0);
        if (times.isAllDay) {
            return start + instant("DTEND", times, 1);
        }
        Times end = times;
        ++end.hour;
        return start + instant("DTEND", end, 0);
    }

    // The days between two occurrences.
    int addRule(std::string& text) {
        const int kind = between(1, 100);
        const std::string count = ";COUNT=" + std::to_string(between(4, 40));
        if (kind <= 70) { // a course, a project's meeting
            text += "RRULE:FREQ=WEEKLY" + count + "\r\n";
            return 7;
        }
        if (kind <= 80) { // some days running
            text += "RRULE:FREQ=DAILY" + count + "\r\n";
            return 1;
        }
        if (kind <= 99) { // a birthday
            text += "RRULE:FREQ=YEARLY\r\n";
            return 365;
        }
        text += "RRULE:FREQ=WEEKLY\r\n";
        return 7;
    }

    std::string description(int number) {
        static constexpr std::array<std::string_view, 12> words{
            "review",   "the",   "planning", "with", "quarterly", "family",
            "together", "about", "open",     "and",  "results",   "figures"};
        std::string text = "SUMMARY:Meeting number " + std::to_string(number) + "\r\n";
        if (chance(50)) {
            text += "LOCATION:Room " + std::to_string(between(1, 400)) + "\\, second floor\r\n";
        }
        std::string line = "DESCRIPTION:";
        for (int i = between(8, 28); i > 0; --i) {
            line += std::string(words[static_cast<std::size_t>(between(0, 11))]) + " ";
        }
        text += folded(line) + "STATUS:CONFIRMED\r\nTRANSP:OPAQUE\r\nCLASS:PUBLIC\r\n";
        if (chance(25)) {
            text += "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT15M\r\nDESCRIPTION:Reminder\r\n"
                    "END:VALARM\r\n";
        }
        return text + "END:VEVENT\r\n";
    }

    std::mt19937 m_random{20260310};
};

bool writeFile(const std::filesystem::path& path, std::string_view text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    return static_cast<bool>(file.flush());
}

bool writeFiles(const std::filesystem::path& top, int events, int calendars) {
    Maker maker;
    std::vector<std::string> texts(static_cast<std::size_t>(calendars));
    for (int i = 0; i < events; ++i) {
        texts[static_cast<std::size_t>(i % calendars)] += maker.event(i);
    }
    bool written = true;
    for (int i = 0; i < calendars; ++i) {
        written = writeFile(top / ("calendar" + std::to_string(i + 1) + ".ics"),
                            calendarText(texts[static_cast<std::size_t>(i)])) &&
                  written;
    }
    return written;
}

bool writeFolders(const std::filesystem::path& top, int events, int calendars) {
    Maker maker;
    bool written = true;
    for (int i = 0; i < events; ++i) {
        const auto folder = top / ("calendar" + std::to_string(i % calendars + 1));
        if (i < calendars) {
            std::filesystem::create_directories(folder);
            written = writeFile(folder / "displayname", folder.filename().string() + "\n");
        }
        written = writeFile(folder / ("event-" + std::to_string(i) + ".ics"),
                            calendarText(maker.event(i))) &&
                  written;
    }
    return written;
}

bool readNumber(const char* text, int& number) {
    const std::string_view view = text;
    const auto [end, error] = std::from_chars(view.data(), view.data() + view.size(), number);
    return error == std::errc() && end == view.data() + view.size() && number > 0;
}

} // namespace

int main(int argc, char** argv) {
    int events = 0;
    int calendars = 5;
    const std::string_view form = argc > 1 ? argv[1] : "";
    if (argc < 4 || argc > 5 || (form != "files" && form != "vdir") ||
        !readNumber(argv[3], events) || (argc == 5 && !readNumber(argv[4], calendars))) {
        std::cerr << "usage: make_calendars files|vdir DIR EVENTS [CALENDARS]\n";
        return 2;
    }
    const std::filesystem::path top = argv[2];
    std::filesystem::create_directories(top);
    const bool written =
        form == "files" ? writeFiles(top, events, calendars) : writeFolders(top, events, calendars);
    if (!written) {
        std::cerr << "make_calendars: cannot write below " << top << '\n';
        return 1;
    }
    return 0;
}
