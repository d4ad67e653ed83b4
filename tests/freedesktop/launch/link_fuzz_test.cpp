// Thousands of odd links, the same in every run.
#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "freedesktop/launch/calendar_applications.h"
#include "freedesktop/launch/calendar_link.h"
#include "freedesktop/launch/exec_line.h"
#include "freedesktop/launch/openable_link.h"
#include "platform/ns_url.h"

namespace quorvel::freedesktop {
namespace {

class LinkMaker {
public:
    std::string next() {
        std::string link = seeds[below(seeds.size())];
        for (std::size_t changes = below(6); changes > 0; --changes) {
            change(link);
        }
        return link;
    }
    std::size_t below(std::size_t limit) { return m_random() % limit; }

private:
    void change(std::string& link) {
        const std::size_t place = below(link.size() + 1);
        const std::string& piece = pieces[below(pieces.size())];
        switch (below(6)) {
        case 0:
            link.insert(place, piece);
            break;
        case 1:
            link.insert(place, 1, static_cast<char>(below(256)));
            break;
        case 2:
            link.erase(place, below(8));
            break;
        case 3:
            link.replace(place, std::min(piece.size(), link.size() - place), piece);
            break;
        case 4:
            link.insert(place, link.substr(below(link.size() + 1), below(40)));
            break;
        default:
            link += std::string(below(40000), 'x');
            break;
        }
    }

    const std::vector<std::string> seeds = {
        "x-apple-calevent://work-1a2b3c4d/lunch@example.org?o=415907100.0",
        "x-apple-calevent://a/b/c?o=-63113904000.0",
        "x-apple-calevent://a/?o=1?o=252423993599.9",
        "fantastical2://show?date=2014-3-7",
        "fantastical2://show?date=9999-12-31",
        "fantastical2://show?date=1-1-1",
        "fantastical2://show?date=2000-2-29"};
    const std::vector<std::string> pieces = {"?o=",
                                             "/",
                                             "//",
                                             "://",
                                             "-",
                                             "0",
                                             "99999999999999999999",
                                             "1e308",
                                             "nan",
                                             "-inf",
                                             "-0.0",
                                             "0x1p9",
                                             "%00",
                                             "%",
                                             "%u",
                                             "\n",
                                             "\r\n",
                                             " ",
                                             "'",
                                             "\"",
                                             "$(x)",
                                             "`",
                                             ";",
                                             "\\",
                                             "\xC3",
                                             "\xFF",
                                             "--help",
                                             "?date=",
                                             "file://",
                                             "2-30",
                                             "x-apple-calevent://",
                                             "0-",
                                             ":",
                                             "&",
                                             "#",
                                             "\x01\x7F",
                                             "..",
                                             "+1",
                                             "fantastical2://show?date="};
    std::mt19937 m_random{20140307};
};

void checkEvent(const EventLink& event, const std::string& link) {
    EXPECT_FALSE(event.calendar.empty()) << link;
    EXPECT_EQ(event.calendar.find('/'), std::string::npos) << link;
    EXPECT_FALSE(event.uid.empty()) << link;
    EXPECT_TRUE(std::isfinite(event.start.timeIntervalSinceReferenceDate)) << link;
    EXPECT_EQ(link.rfind("x-apple-calevent://" + event.calendar + '/' + event.uid + "?o=", 0), 0U)
        << link;
}

void checkDay(const DayLink& day, const std::string& link) {
    EXPECT_TRUE(day.year >= 1 && day.year <= 9999) << link;
    EXPECT_TRUE(day.month >= 1 && day.month <= 12) << link;
    EXPECT_TRUE(day.day >= 1 && day.day <= 31) << link;
}

bool isGraphicAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

void checkOpening(const CalendarLink& link, CalendarApplicationState state) {
    const auto evolution = argumentsToOpen(link, CalendarApplication::evolution, state);
    const bool hasEvent = state.knowsCalendar && std::holds_alternative<EventLink>(link);
    ASSERT_EQ(evolution.links.size(), hasEvent && !state.isRunning ? 2U : 1U);
    for (const std::string& opened : evolution.links) {
        EXPECT_TRUE(isGraphicAscii(opened)) << opened;
        EXPECT_EQ(opened.rfind("calendar:///?", 0), 0U);
        EXPECT_EQ(opened.find_first_of("'\"`$;|<>()\\ #"), std::string::npos);
    }
    if (!hasEvent || !state.isRunning) {
        constexpr std::size_t lengthOfDay =
            std::string_view("calendar:///?startdate=20140307T174500Z").size();
        EXPECT_EQ(evolution.links.front().size(), lengthOfDay) << evolution.links.front();
    }
    const auto gnome = argumentsToOpen(link, CalendarApplication::gnomeCalendar, state);
    ASSERT_EQ(gnome.arguments.size(), 2U);
    EXPECT_EQ(gnome.arguments[0], hasEvent ? "--uuid" : "--date");
    EXPECT_FALSE(gnome.arguments[1].empty());
}

TEST(LinkFuzzTest, EveryLinkIsRefusedOrPassedUnchanged) {
    LinkMaker maker;
    int opened = 0;
    int parsed = 0;
    for (int i = 0; i < 20000 && !testing::Test::HasFailure(); ++i) {
        const std::string link = maker.next();
        const bool mayBeOpened = checkLink(link).hasValue();
        if (mayBeOpened) {
            ++opened;
            EXPECT_TRUE(isGraphicAscii(link) && link.size() <= 32768) << link;
            EXPECT_TRUE(link.rfind("x-apple-calevent:", 0) == 0 ||
                        link.rfind("fantastical2:", 0) == 0)
                << link;
            const auto arguments = argumentsOf("app --open=%u %U", {}, std::array{link});
            EXPECT_EQ(arguments, (std::vector<std::string>{"app", "--open=" + link, link}));
        }
        if (const auto calendarLink = parseCalendarLink(link)) {
            ++parsed;
            if (const auto* event = std::get_if<EventLink>(&*calendarLink)) {
                checkEvent(*event, link);
            } else {
                checkDay(std::get<DayLink>(*calendarLink), link);
            }
            if (mayBeOpened) {
                checkOpening(*calendarLink, {i % 2 == 0, i % 4 < 2});
            }
        }
        EXPECT_LE(shortened(link).size(), 83U);
        if (const auto name = desktopEntryName(link)) {
            EXPECT_TRUE(isGraphicAscii(*name) && name->find('/') == std::string::npos) << link;
        }
    }
    EXPECT_GT(opened, 5000); // or the links are no longer odd in an interesting way
    EXPECT_GT(parsed, 3000);
}

// No link that the widget itself can make is refused for its characters.
TEST(LinkFuzzTest, TheWidgetsOwnCharactersAreAccepted) {
    LinkMaker maker;
    int made = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string link = maker.next();
        if (platform::NSURL::URLWithString(link)) {
            ++made;
            const auto checked = checkLink(link);
            EXPECT_TRUE(checked ||
                        checked.error().what != "it holds characters that no link may hold")
                << link;
        }
    }
    EXPECT_GT(made, 1000);
}

} // namespace
} // namespace quorvel::freedesktop
