// Which calendars the preferences of a profile name.
#include "freedesktop/calendars/thunderbird/calendar_registry.h"

#include <gtest/gtest.h>

#include "freedesktop/calendars/thunderbird/preferences_script.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

using Preferences = std::map<std::string, std::string>;

TEST(PreferencesScript, TextsNumbersAndFlagsComeWithoutTheirMarks) {
    EXPECT_EQ(preferencesIn("// user_pref(\"a.no\", 1);\r\n"
                            "user_pref(\"a.text\", \"one, \\\"two\\\" \\\\ )\");\r\n"
                            "user_pref(\"a.flag\", true);\r\n"
                            "  user_pref ( \"a.number\" , -5 ) ;\r\n"
                            "user_pref('a.single', 'x\"y');\r\n"
                            "user_pref(\"b.other\", 1);\r\n",
                            "a."),
              (Preferences{{"a.text", "one, \"two\" \\ )"},
                           {"a.flag", "true"},
                           {"a.number", "-5"},
                           {"a.single", "x\"y"}}));
}

TEST(PreferencesScript, EscapesAreCharacters) {
    EXPECT_EQ(preferencesIn("user_pref(\"a\", \"\\x41\\u00fc\\ud83c\\udf82\\n\\r\");", "a").at("a"),
              "A\xC3\xBC\xF0\x9F\x8E\x82\n\r");
    EXPECT_EQ(preferencesIn("user_pref(\"a\", \"\\ud83c.\\xZZ\\u12\");", "a").at("a"),
              "\xEF\xBF\xBD.xZZu12");
}

TEST(PreferencesScript, BrokenLinesArePassedOver) {
    EXPECT_EQ(preferencesIn("user_pref\nuser_pref(\nuser_pref(\"a\nuser_pref(\"a.1\"\n"
                            "user_pref(\"a.2\" 3);\nuser_pref(\"a\\\nuser_pref(\"a.4\", 4",
                            "a"),
              (Preferences{{"a.4", "4"}}));
}

std::string summary(const std::string& preferences) {
    std::string text;
    for (const RegisteredCalendar& calendar : registeredCalendars(preferences)) {
        text += calendar.id + " " + calendar.name + " " + calendar.colour +
                (calendar.isLocal ? " local" : " remote") +
                (calendar.isSelected ? "" : " unticked") + (calendar.isCached ? "" : " uncached") +
                "\n";
    }
    return text;
}

// Lines of "id.property value" as preferences.
std::string registry(const std::string& lines) {
    std::string text;
    for (std::size_t start = 0; start < lines.size();) {
        const std::size_t end = lines.find('\n', start);
        const std::string line = lines.substr(start, end - start);
        const std::size_t space = line.find(' ');
        text += "user_pref(\"calendar.registry." + line.substr(0, space) + "\", " +
                line.substr(space + 1) + ");\n";
        start = end + 1;
    }
    return text;
}

TEST(CalendarRegistry, HasNamesColoursAndKinds) {
    EXPECT_EQ(summary(registry("1a-f.name \"Home\"\n1a-f.color \"#ff0000\"\n1a-f.type \"storage\"\n"
                               "2b.name \"Work\"\n2b.type \"caldav\"\n2b.cache.enabled true\n"
                               "3c.name \"Far\"\n3c.type \"ics\"\n3c.cache.enabled false\n")),
              "1a-f Home #ff0000 local\n2b Work  remote\n3c Far  remote uncached\n");
}

TEST(CalendarRegistry, LeavesOutWhatIsOffOrOnlyInMemory) {
    EXPECT_EQ(summary(registry("a.type \"storage\"\na.disabled true\nb.type \"storage\"\n"
                               "b.disabled false\nc.type \"memory\"\nd.name \"no type\"\n")),
              "b   local\n");
}

TEST(CalendarRegistry, ATickCountsOnceAnyCalendarHasOne) {
    const std::string two = "a.type \"storage\"\nb.type \"storage\"\n";
    EXPECT_EQ(summary(registry(two)), "a   local\nb   local\n");
    EXPECT_EQ(summary(registry(two + "b.calendar-main-in-composite true\n")),
              "a   local unticked\nb   local\n");
}

TEST(CalendarRegistry, FollowsTheOrderOfTheList) {
    const std::string three =
        registry("aa.type \"storage\"\na.type \"storage\"\nb.type \"storage\"\n");
    EXPECT_EQ(summary(three + "user_pref(\"calendar.list.sortOrder\", \"b aa\");\n"),
              "b   local\naa   local\na   local\n");
}

TEST(CalendarRegistry, BoundsTheNumberOfCalendars) {
    std::string many;
    for (int index = 0; index < 2000; ++index) {
        many += std::to_string(index) + ".type \"storage\"\n";
    }
    EXPECT_EQ(registeredCalendars(registry(many)).size(), 500U);
}

} // namespace
} // namespace quorvel::freedesktop::thunderbird
