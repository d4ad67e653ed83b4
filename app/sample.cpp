#include "app/sample.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

#include "freedesktop/dates/time_zone.h"
#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::dateOf;
using freedesktop::localTime;
using freedesktop::TimeZone;
using freedesktop::translated;
using platform::NSDate;

namespace {

std::string dateText(const CivilTime& time) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%04d%02d%02d", time.year, time.month, time.day);
    return text.data();
}

std::string timeText(const CivilTime& time) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "T%02d%02d00", time.hour, time.minute);
    return dateText(time) + text.data();
}

// Absent for anything but a sign and a number behind it.
std::optional<int> signedNumber(std::string_view text) {
    if (text.size() < 2 || text.size() > 6 || (text[0] != '+' && text[0] != '-')) {
        return std::nullopt;
    }
    int number = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0) {
        return std::nullopt;
    }
    return text[0] == '-' ? -number : number;
}

std::string dateDaysFromToday(int days, NSDate now, const TimeZone& zone) {
    const CivilTime today = localTime(zone, now);
    // Noon exists on every day; days beyond the month's end carry over.
    return dateText(localTime(
        zone, dateOf(zone, CivilTime{today.year, today.month, today.day + days, 12, 0, 0})));
}

std::string timeMinutesFromNow(int minutes, NSDate now, const TimeZone& zone) {
    CivilTime time = localTime(zone, now.dateByAddingTimeInterval(minutes * 60.0));
    time.minute -= time.minute % 15;
    return timeText(time);
}

std::optional<std::string> placeholderText(std::string_view name, NSDate now,
                                           const TimeZone& zone) {
    constexpr std::string_view nowPrefix = "now";
    if (const std::optional<int> days = signedNumber(name)) {
        return dateDaysFromToday(*days, now, zone);
    }
    if (name.starts_with(nowPrefix) && name.ends_with('m')) {
        name.remove_prefix(nowPrefix.size());
        name.remove_suffix(1);
        if (const std::optional<int> minutes = signedNumber(name)) {
            return timeMinutesFromNow(*minutes, now, zone);
        }
    }
    return std::nullopt;
}

Result<std::string> readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file) {
        return Error{filled(translated("'{1}' cannot be read"), {path.string()}),
                     {},
                     translated("install the program again")};
    }
    return text;
}

} // namespace

std::string filledTemplate(std::string_view text, NSDate now, const TimeZone& zone) {
    std::string filled;
    while (true) {
        const std::size_t first = text.find('@');
        filled += text.substr(0, first);
        if (first == std::string_view::npos) {
            return filled;
        }
        text.remove_prefix(first + 1);
        const std::size_t last = text.find('@');
        const auto value = last == std::string_view::npos
                               ? std::nullopt
                               : placeholderText(text.substr(0, last), now, zone);
        if (value) {
            filled += *value;
            text.remove_prefix(last + 1);
        } else {
            filled += '@';
        }
    }
}

Result<std::vector<SampleCalendar>> readSampleCalendars(const std::string& folder, NSDate now,
                                                        const TimeZone& zone) {
    std::vector<SampleCalendar> calendars;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.path().extension() != ".ics") {
            continue;
        }
        const Result<std::string> text = readFile(entry.path());
        if (!text) {
            return text.error();
        }
        calendars.push_back({entry.path().stem().string(), filledTemplate(*text, now, zone)});
    }
    if (calendars.empty()) {
        return Error{filled(translated("the sample calendars are not in '{1}'"), {folder}),
                     {},
                     translated("install the program again")};
    }
    std::ranges::sort(calendars, {}, &SampleCalendar::name);
    return calendars;
}

} // namespace quorvel::app
