// Holds the table of settings, from which the manual page is made, against the code.
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "agenda/color_codes.h"
#include "agenda/quorvel_view.h"
#include "hosting/process_wide_values.h"
#include "hosting/quorvel_view_controller_new.h"
#include "tests/agenda/agenda_fixture.h"

namespace quorvel {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::ElementsAreArray;

struct TableRow {
    std::string key;
    std::string type;
    std::string defaultValue;
    std::string meaning;
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

class SettingsTableTest : public AgendaFixture {
protected:
    SettingsTableTest() {
        std::ifstream file(QUORVEL_SETTINGS_TABLE);
        std::string line;
        std::getline(file, line);
        header = columnsOf(line);
        while (std::getline(file, line)) {
            const auto columns = columnsOf(line);
            if (columns.size() == 4) {
                rows.push_back({columns[0], columns[1], columns[2], columns[3]});
            } else {
                ADD_FAILURE() << "not four columns: " << line;
            }
        }
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
};

TEST_F(SettingsTableTest, ListsTheKeysThatAreReadInTheirOrder) {
    EXPECT_THAT(header, ElementsAre("key", "type", "default", "meaning"));
    std::vector<std::string> keys;
    for (const TableRow& row : rows) {
        keys.push_back(row.key);
        EXPECT_FALSE(row.meaning.empty()) << row.key;
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

} // namespace
} // namespace quorvel
