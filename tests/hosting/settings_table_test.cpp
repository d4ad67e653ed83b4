// Holds the tables of settings and colours, which the manual page, the command and the settings
// window read, against the widget's code.
#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>

#include "agenda/color_codes.h"
#include "agenda/quorvel_view.h"
#include "agenda/row_icon.h"
#include "agenda/settings_loading.h"
#include "hosting/process_wide_values.h"
#include "hosting/quorvel_view_controller_new.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::AnyOf;
using testing::ElementsAre;
using testing::ElementsAreArray;

struct TableRow {
    std::string key;
    std::string type;
    std::string values;
    std::string defaultValue;
    std::string group;
    std::string label;
    std::string meaning;
};

struct ColourRow {
    std::int64_t code = 0;
    std::string name;
    std::string value;
};

std::vector<std::string> columnsOf(const std::string& line) {
    std::vector<std::string> columns{""};
    for (const char c : line) {
        if (c == '\t') {
            columns.emplace_back();
        } else {
            columns.back() += c;
        }
    }
    return columns;
}

// The columns of each line, the first line included.
std::vector<std::vector<std::string>> tableIn(const char* path) {
    std::ifstream file(path);
    std::vector<std::vector<std::string>> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(columnsOf(line));
    }
    return lines;
}

// A component as a byte, in two hexadecimal digits.
std::string hexByte(CGFloat component) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "%02X",
                  static_cast<unsigned>(std::lround(component * 255)));
    return text.data();
}

std::string hexText(const UIColor& color) {
    return '#' + hexByte(color.red) + hexByte(color.green) + hexByte(color.blue);
}

class SettingsTableTest : public AgendaFixture {
protected:
    SettingsTableTest() {
        auto lines = tableIn(QUORVEL_SETTINGS_TABLE);
        header = lines.at(0);
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const auto& columns = lines[i];
            if (columns.size() == 7) {
                rows.push_back({columns[0], columns[1], columns[2], columns[3], columns[4],
                                columns[5], columns[6]});
            } else {
                ADD_FAILURE() << "not seven columns: " << testing::PrintToString(columns);
            }
        }
        lines = tableIn(QUORVEL_COLOURS_TABLE);
        colourHeader = lines.at(0);
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const auto& columns = lines[i];
            colours.push_back({std::stoll(columns.at(0)), columns.at(1), columns.at(2)});
        }
    }

    const TableRow& row(std::string_view key) const {
        return *std::ranges::find(rows, key, &TableRow::key);
    }

    // What the widget has under that name after a load of that dictionary by both readers.
    KeyValue loaded(PropertyListDictionary dictionary, const std::string& key) {
        resetToZeroState();
        setSettings(std::move(dictionary));
        const auto view = std::make_shared<QuorvelView>(platform(), CGRect{});
        view->loadPreferences();
        QuorvelViewControllerNew controller(platform());
        controller.loadPreferences();
        if (key == "maxHeight") {
            return controller.valueForKey(key);
        }
        if (key == "swipeAction") {
            return view->valueForKey(key);
        }
        return ProcessWideValues().valueForKey(key);
    }

    static KeyValue expectedDefault(const TableRow& row) {
        if (row.type == "boolean") {
            EXPECT_TRUE(row.defaultValue == "true" || row.defaultValue == "false") << row.key;
            return row.defaultValue == "true";
        }
        if (row.type == "integer") {
            return std::int64_t{std::stoll(row.defaultValue)};
        }
        if (row.type == "number") {
            return std::stod(row.defaultValue);
        }
        if (row.type == "colour") {
            return colorForCode(std::stoll(row.defaultValue));
        }
        EXPECT_EQ(row.type, "text") << row.key;
        return row.defaultValue;
    }

    // A stored value that is not the default, and what becomes of it.
    static std::pair<PropertyListValue, KeyValue> otherValue(const TableRow& row) {
        if (row.type == "boolean") {
            const bool value = row.defaultValue != "true";
            return {plist(value), value};
        }
        if (row.type == "integer") {
            return {plist(3), std::int64_t{3}}; // a swipe action too
        }
        if (row.type == "number") {
            return {plist(123.5), 123.5};
        }
        if (row.type == "colour") {
            return {plist(8), UIColor::purpleColor()};
        }
        return {plist("something"), std::string("something")};
    }

    std::vector<std::string> header;
    std::vector<TableRow> rows;
    std::vector<std::string> colourHeader;
    std::vector<ColourRow> colours;
};

TEST_F(SettingsTableTest, ListsTheKeysThatAreReadInTheirOrder) {
    EXPECT_THAT(header,
                ElementsAre("key", "type", "values", "default", "group", "label", "meaning"));
    std::vector<std::string> keys;
    for (const TableRow& row : rows) {
        keys.push_back(row.key);
        EXPECT_FALSE(row.meaning.empty()) << row.key;
        EXPECT_FALSE(row.label.empty()) << row.key;
        EXPECT_THAT(row.group, AnyOf("look", "rows", "events", "calendars", "pull", "icon"))
            << row.key;
    }
    EXPECT_THAT(keys, ElementsAreArray(settingKeyNames));
}

TEST_F(SettingsTableTest, GivesTheDefaultsOfAnEmptyDictionary) {
    ASSERT_FALSE(rows.empty());
    for (const TableRow& row : rows) {
        EXPECT_EQ(loaded({}, row.key), expectedDefault(row)) << row.key;
    }
}

TEST_F(SettingsTableTest, ListsNoKeyThatIsNotRead) {
    ASSERT_FALSE(rows.empty());
    for (const TableRow& row : rows) {
        const auto [stored, expected] = otherValue(row);
        EXPECT_NE(expected, expectedDefault(row)) << row.key;
        EXPECT_EQ(loaded({{row.key, stored}}, row.key), expected) << row.key;
    }
}

// The largest and the smallest number of a range reach the widget unchanged.
TEST_F(SettingsTableTest, LimitsNumbersToThoseThatTheWidgetTakes) {
    int ranges = 0;
    for (const TableRow& row : rows) {
        const std::size_t dots = row.values.find("..");
        if (dots == std::string::npos) {
            continue;
        }
        ++ranges;
        for (const std::string& text : {row.values.substr(0, dots), row.values.substr(dots + 2)}) {
            const auto number = std::stoll(text);
            const auto expected = row.type == "number" ? KeyValue(static_cast<double>(number))
                                                       : KeyValue(std::int64_t{number});
            EXPECT_EQ(loaded({{row.key, {std::int64_t{number}}}}, row.key), expected) << row.key;
        }
    }
    EXPECT_EQ(ranges, 6);
}

TEST_F(SettingsTableTest, ListsTheSwipeActions) {
    std::set<std::int64_t> listed;
    std::stringstream choices(row("swipeAction").values);
    for (std::string choice; std::getline(choices, choice, '|');) {
        listed.insert(std::stoll(choice));
    }
    for (std::int64_t action = -2; action <= 10; ++action) {
        const bool isStored = loadedSwipeAction({{"swipeAction", {action}}}) == action;
        EXPECT_EQ(listed.contains(action), isStored) << action;
    }
}

TEST_F(SettingsTableTest, ListsTheWordsForIcons) {
    std::vector<std::string> words;
    std::stringstream choices(row("iconFile").values);
    for (std::string choice; std::getline(choices, choice, '|');) {
        words.push_back(choice.substr(0, choice.find('=')));
    }
    EXPECT_THAT(words,
                ElementsAre(std::string(defaultIconFile), "DOT", "DOT_LARGE", "NONE", "path"));
    EXPECT_EQ(rowIconKind("DOT"), RowIconKind::dot);
    EXPECT_EQ(rowIconKind("DOT_LARGE"), RowIconKind::dot);
    EXPECT_GT(dotDiameter("DOT_LARGE"), dotDiameter("DOT"));
    EXPECT_EQ(rowIconKind("NONE"), RowIconKind::none);
}

TEST_F(SettingsTableTest, ListsTheColoursByTheirCodes) {
    EXPECT_THAT(colourHeader, ElementsAre("code", "name", "value"));
    std::set<std::int64_t> codes;
    for (const ColourRow& colour : colours) {
        codes.insert(colour.code);
        if (colour.code != calendarColorCode) {
            EXPECT_EQ(colour.value, hexText(colorForCode(colour.code))) << colour.name;
        }
    }
    for (std::int64_t code = -1; code <= 1000; ++code) {
        const bool isNamed = colorForCode(code) != UIColor::whiteColor();
        EXPECT_TRUE(!isNamed || codes.contains(code)) << code;
    }
    EXPECT_EQ(codes.size(), 11U);
    EXPECT_EQ(colours.back().code, calendarColorCode);
    EXPECT_EQ(colours.back().value, "");
}

// Only the title can have the colour of its calendar.
TEST_F(SettingsTableTest, GivesTheCalendarsColourToTheTitle) {
    EXPECT_EQ(row("textColor").values, "colours|calendar");
    EXPECT_EQ(row("subtitleTextColor").values, "colours");
    EXPECT_EQ(row("dateTextColor").values, "colours");
    loadRowSettings({{"textColor", {calendarColorCode}}});
    EXPECT_TRUE(settings::titleColorSameAsCalendarColor);
}

} // namespace
} // namespace quorvel
