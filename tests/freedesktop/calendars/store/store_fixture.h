// A calendar store over texts and folders made for one test, asked in plain words.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "icalendar/text/property_values.h"

namespace quorvel::freedesktop {

inline std::string calendarText(const std::string& content) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + content + "END:VCALENDAR\r\n";
}

// Lines are parted by '|'.
inline std::string eventText(std::string lines) {
    std::string text = "BEGIN:VEVENT\r\n";
    for (const char c : lines) {
        text += c == '|' ? "\r\n" : std::string(1, c);
    }
    return text + "\r\nEND:VEVENT\r\n";
}

class StoreFixture : public ::testing::Test {
protected:
    StoreFixture()
        : zone(namedTimeZone("Europe/Berlin"))
        , stores(zone, [this](const CalendarProblem& problem) {
            problems += problem.file + ":" + std::to_string(problem.line) + ": " +
                        problem.what.english() + "\n";
        }) {}

    void SetUp() override {
        std::string pattern = std::filesystem::temp_directory_path() / "quorvel-calendar-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    void write(const std::string& name, const std::string& text) const {
        const std::filesystem::path path = folder / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }

    void useText(const std::string& content) {
        stores.setSources({CalendarSource::inMemory("test", calendarText(content))});
    }

    platform::NSDate date(std::string_view text) const {
        const auto time = icalendar::parseTime(text);
        return time->isUtc ? dateOf(*utcTimeZone(), time->civil) : dateOf(*zone, time->civil);
    }

    std::string localTimeText(platform::NSDate instant) const {
        const CivilTime time = localTime(*zone, instant);
        char text[40];
        std::snprintf(text, sizeof text, "%04d%02d%02dT%02d%02d%02d", time.year, time.month,
                      time.day, time.hour, time.minute, time.second);
        return text;
    }

    platform::EKEvents events(std::string_view from, std::string_view to) {
        const auto store = stores.makeEventStore();
        return store->eventsMatchingPredicate({date(from), date(to), store->calendars()});
    }

    // "title start-end" a line, in the user's zone; all-day ones with a "D".
    std::string found(std::string_view from, std::string_view to) {
        std::string result;
        for (const auto& event : events(from, to)) {
            result += event->title.value_or("-") + (event->isAllDay ? " D " : " ") +
                      localTimeText(event->startDate) + "-" + localTimeText(event->endDate) + "\n";
        }
        return result;
    }

    std::string titles() {
        std::string result;
        for (const auto& calendar : stores.makeEventStore()->calendars()) {
            result += (result.empty() ? "" : ",") + calendar->title;
        }
        return result;
    }

    std::shared_ptr<const TimeZone> zone;
    std::string problems;
    FileCalendarStores stores;
    std::filesystem::path folder;
};

} // namespace quorvel::freedesktop
