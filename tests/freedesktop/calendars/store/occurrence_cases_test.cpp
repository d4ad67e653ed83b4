// Whole calendars beside what they come to. Each .json of the folder names a zone and a window, and
// what the .ics of its name must give there; nothing that is not listed may be found or reported.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "icalendar/text/property_values.h"

namespace quorvel::freedesktop {
namespace {

using Lines = std::vector<std::string>;
using Path = std::filesystem::path;

constexpr std::size_t fewestCalendars = 150;

std::vector<Path> filesEndingIn(const std::string& extension) {
    std::vector<Path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(QUORVEL_OCCURRENCE_CASES)) {
        if (entry.path().extension() == extension) {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

// "name.json" and "name.zone.json" both belong to "name.ics".
Path calendarOf(const Path& answers) {
    const std::string name = answers.filename();
    return answers.parent_path() / (name.substr(0, name.find('.')) + ".ics");
}

// "2024-03-31T03:30:00+02:00".
std::optional<platform::NSDate> readInstant(const std::string& text) {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int offsetHours = 0;
    int offsetMinutes = 0;
    char sign = '+';
    if (std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%c%2d:%2d", &year, &month, &day, &hour,
                    &minute, &second, &sign, &offsetHours, &offsetMinutes) != 9) {
        return std::nullopt;
    }
    const std::int64_t offset = (offsetHours * 60 + offsetMinutes) * (sign == '-' ? -60 : 60);
    const std::int64_t localTime = civilSeconds({year, month, day, hour, minute, second});
    return platform::dateWithTimeIntervalSince1970(static_cast<double>(localTime - offset));
}

std::string shownDay(const CivilTime& time) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", time.year, time.month, time.day);
    return text;
}

std::string shownInstant(const TimeZone& zone, platform::NSDate instant) {
    const CivilTime time = localTime(zone, instant);
    const int offset = offsetAt(zone, instant);
    const int east = std::abs(offset);
    char text[64];
    std::snprintf(text, sizeof text, "T%02d:%02d:%02d%c%02d:%02d", time.hour, time.minute,
                  time.second, offset < 0 ? '-' : '+', east / 3600, east / 60 % 60);
    std::string result = shownDay(time) + text;
    if (east % 60 != 0) { // local mean time
        std::snprintf(text, sizeof text, ":%02d", east % 60);
        result += text;
    }
    return result;
}

std::string line(const std::string& start, const std::string& end, bool isAllDay,
                 const std::optional<std::string>& title) {
    return start + (isAllDay ? " to and with " : " until ") + end + ": " +
           (title ? "\"" + *title + "\"" : "no title");
}

std::string expectedLine(const nlohmann::json& occurrence) {
    const bool isAllDay = occurrence.value("allDay", false);
    const auto title = occurrence.contains("title")
                           ? std::optional(occurrence.at("title").get<std::string>())
                           : std::nullopt;
    return line(occurrence.at("start"), occurrence.at(isAllDay ? "lastDay" : "end"), isAllDay,
                title);
}

// An all-day event lasts from the first second of its first day to the last second of its last.
std::string shownDays(const TimeZone& zone, const platform::EKEvent& event) {
    const CivilTime start = localTime(zone, event.startDate);
    const CivilTime end = localTime(zone, event.endDate);
    const bool startsAtMidnight = start.hour == 0 && start.minute == 0 && start.second == 0;
    const CivilTime before = localTime(zone, event.startDate.dateByAddingTimeInterval(-1));
    std::string result = line(shownDay(start), shownDay(end), true, event.title);
    if (!startsAtMidnight && shownDay(before) == shownDay(start)) {
        result += ", but from " + shownInstant(zone, event.startDate);
    }
    if (end.hour != 23 || end.minute != 59 || end.second != 59) {
        result += ", but until " + shownInstant(zone, event.endDate);
    }
    return result;
}

std::string foundLine(const TimeZone& zone, const platform::EKEvent& event) {
    return event.isAllDay ? shownDays(zone, event)
                          : line(shownInstant(zone, event.startDate),
                                 shownInstant(zone, event.endDate), false, event.title);
}

// What is in one list and not in the other, and the whole of what was found.
std::string difference(const Lines& expected, const Lines& found) {
    const std::multiset<std::string> wanted(expected.begin(), expected.end());
    const std::multiset<std::string> had(found.begin(), found.end());
    Lines missing;
    Lines surplus;
    std::set_difference(wanted.begin(), wanted.end(), had.begin(), had.end(),
                        std::back_inserter(missing));
    std::set_difference(had.begin(), had.end(), wanted.begin(), wanted.end(),
                        std::back_inserter(surplus));
    std::string text = missing.empty() && surplus.empty() ? "  their order is another\n" : "";
    for (const std::string& one : missing) {
        text += "  missing:  " + one + "\n";
    }
    for (const std::string& one : surplus) {
        text += "  surplus:  " + one + "\n";
    }
    text += "  found in all, in order:\n";
    for (const std::string& one : found) {
        text += "    " + one + "\n";
    }
    return text;
}

class OccurrenceCases : public ::testing::TestWithParam<Path> {
protected:
    Lines found(const Path& calendar, const std::shared_ptr<const TimeZone>& zone,
                platform::NSDate from, platform::NSDate to) {
        FileCalendarStores stores(zone, [this](const CalendarProblem& problem) {
            m_problems.push_back(std::to_string(problem.line) + ": " + problem.what.english());
        });
        stores.setSources({CalendarSource::at(calendar)});
        const auto store = stores.makeEventStore();
        Lines lines;
        for (const auto& event : store->eventsMatchingPredicate({from, to, store->calendars()})) {
            lines.push_back(foundLine(*zone, *event));
        }
        return lines;
    }

    // Each expected one is the beginning of a line number and a part of the text behind it, as in
    // "12: DTEND lies before".
    void compareProblems(Lines expected) {
        for (const std::string& problem : m_problems) {
            const auto match =
                std::find_if(expected.begin(), expected.end(), [&](const std::string& one) {
                    const std::size_t text = one.find(": ") + 2;
                    return problem.substr(0, text) == one.substr(0, text) &&
                           problem.find(one.substr(text), text) != std::string::npos;
                });
            if (match == expected.end()) {
                ADD_FAILURE() << "surplus problem: " << problem;
            } else {
                expected.erase(match);
            }
        }
        for (const std::string& one : expected) {
            ADD_FAILURE() << "missing problem: " << one;
        }
    }

    Lines m_problems;
};

TEST_P(OccurrenceCases, AreFound) {
    std::ifstream file(GetParam());
    const auto answers = nlohmann::json::parse(file);
    const std::string about = answers.at("about");
    const auto zone = namedTimeZone(answers.at("zone").get<std::string>());
    const auto from = readInstant(answers.at("from"));
    const auto to = readInstant(answers.at("to"));
    ASSERT_TRUE(zone && from && to) << "the zone or the window cannot be read";
    ASSERT_FALSE(about.empty());

    Lines expected;
    for (const auto& occurrence : answers.at("occurrences")) {
        expected.push_back(expectedLine(occurrence));
    }
    const Lines actual = found(calendarOf(GetParam()), zone, *from, *to);
    EXPECT_TRUE(actual == expected) << about << "\n" << difference(expected, actual);
    compareProblems(answers.value("problems", Lines()));
}

std::string caseName(const ::testing::TestParamInfo<Path>& info) {
    std::string name = info.param.stem();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Calendars, OccurrenceCases, ::testing::ValuesIn(filesEndingIn(".json")),
                         caseName);

TEST(OccurrenceCaseFolder, HoldsPairs) {
    std::set<Path> answered;
    for (const Path& answers : filesEndingIn(".json")) {
        answered.insert(calendarOf(answers));
    }
    const std::vector<Path> calendars = filesEndingIn(".ics");
    EXPECT_EQ(std::vector<Path>(answered.begin(), answered.end()), calendars);
    EXPECT_GE(calendars.size(), fewestCalendars);
}

} // namespace
} // namespace quorvel::freedesktop
