// The example of docs/icalendar.md is this code.
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "freedesktop/dates/time_zone.h"
#include "icalendar/expansion/occurrences.h"
#include "icalendar/model/ics_file_parser.h"

namespace quorvel::icalendar {
namespace {

std::shared_ptr<LoadedFile> parsed(std::string_view text, const ZoneDirectory& directory) {
    const auto isKnown = [&](std::string_view name) { return directory.isExactName(name); };
    return std::make_shared<LoadedFile>("a calendar", 0, parseIcsFile(text, isKnown));
}

std::vector<Occurrence> occurrencesOf(const std::shared_ptr<LoadedFile>& file, Window window,
                                      const ZoneDirectory& directory,
                                      const ExpansionProblemHandler& onProblem) {
    const EventSet set = collectEvents({file});
    ZoneClock userZone(directory.named("UTC"));
    ZoneNames zones(directory);
    SearchCost cost;
    Expander expander(window, userZone, zones, onProblem, cost);
    std::vector<Occurrence> found;
    for (const EventEntry& entry : set.entries) {
        expander.expand({file.get(), &file->ics.events[entry.event]}, set.overrides, found);
    }
    return found;
}

std::string contentOf(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Example, FindsTheOccurrencesOfTheWindow) {
    constexpr std::string_view text = "BEGIN:VCALENDAR\r\n"
                                      "BEGIN:VEVENT\r\n"
                                      "UID:lesson\r\n"
                                      "DTSTART:20260302T090000Z\r\n"
                                      "DTEND:20260302T100000Z\r\n"
                                      "RRULE:FREQ=WEEKLY\r\n"
                                      "EXDATE:20260316T090000Z\r\n"
                                      "END:VEVENT\r\n"
                                      "END:VCALENDAR\r\n";
    const auto from = static_cast<double>(civilSeconds({2026, 3, 9, 0, 0, 0}));
    const auto to = static_cast<double>(civilSeconds({2026, 3, 29, 0, 0, 0}));
    std::vector<std::string> problems;
    const ExpansionProblemHandler onProblem = [&](LoadedFile&, std::size_t,
                                                  const TranslatableText& what) {
        problems.push_back(what.english());
    };
    const auto file = parsed(text, freedesktop::zoneDirectory());
    const auto found = occurrencesOf(file, {from, to}, freedesktop::zoneDirectory(), onProblem);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].start, civilSeconds({2026, 3, 9, 9, 0, 0}));
    EXPECT_EQ(found[0].end, civilSeconds({2026, 3, 9, 10, 0, 0}));
    EXPECT_EQ(found[1].start, civilSeconds({2026, 3, 23, 9, 0, 0}));
    EXPECT_TRUE(problems.empty());
}

TEST(Example, IsThatOfTheDocumentation) {
    const std::string page = contentOf(QUORVEL_ICALENDAR_PAGE);
    constexpr std::string_view fence = "```cpp\n";
    const std::size_t begin = page.find(fence);
    ASSERT_NE(begin, std::string::npos);
    const std::size_t code = begin + fence.size();
    const std::string example = page.substr(code, page.find("```", code) - code);
    EXPECT_NE(contentOf(QUORVEL_EXAMPLE_SOURCE).find(example), std::string::npos);
}

} // namespace
} // namespace quorvel::icalendar
