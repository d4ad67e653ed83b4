// Loads the plugin's page as the phone's settings do, and changes settings by its widgets.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <adwaita.h>
#include <gmock/gmock.h>

#include "freedesktop/glib/handles.h"
#include "shells/phosh/preferences/preferences_host.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::phosh {
namespace {

using namespace testing_session;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr double patience = 20; // seconds; sanitizers make the programs that it starts slow
constexpr const char* shellSchema = "org.quorvel.shell";
constexpr const char* detailsKey = "show-details-when-locked";

// The build tree's, or that of an installation.
const char* moduleFolder() {
    const char* const folder = std::getenv("QUORVEL_TESTED_PREFERENCES_FOLDER");
    return folder != nullptr ? folder : QUORVEL_PREFERENCES_FOLDER;
}

// Loaded once per process, as by the phone's settings.
GType pageType() {
    static const GType type = [] {
        GIOExtensionPoint* const point =
            g_io_extension_point_register("phosh-lockscreen-widget-prefs");
        g_io_modules_scan_all_in_directory(moduleFolder());
        GIOExtension* const page = g_io_extension_point_get_extension_by_name(point, "quorvel");
        return page != nullptr ? g_io_extension_get_type(page) : G_TYPE_INVALID;
    }();
    return type;
}

#if ADW_CHECK_VERSION(1, 5, 0)
void present(GtkWidget* page) {
    adw_dialog_present(ADW_DIALOG(page), nullptr);
}
void close(GtkWidget* page) {
    adw_dialog_force_close(ADW_DIALOG(page));
}
#else
void present(GtkWidget* page) {
    gtk_window_present(GTK_WINDOW(page));
}
void close(GtkWidget* page) {
    gtk_window_destroy(GTK_WINDOW(page));
}
#endif

// The widget and all below it, in the order of the page.
void append(std::vector<GtkWidget*>& widgets, GtkWidget* widget) {
    widgets.push_back(widget);
    GtkWidget* child = gtk_widget_get_first_child(widget);
    for (; child != nullptr; child = gtk_widget_get_next_sibling(child)) {
        append(widgets, child);
    }
}
std::vector<GtkWidget*> allWidgets(GtkWidget* widget) {
    std::vector<GtkWidget*> widgets;
    append(widgets, widget);
    return widgets;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::size_t openFiles() {
    const std::filesystem::directory_iterator begin("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin, {}));
}

class PreferencesTest : public testing::Test {
protected:
    PreferencesTest() {
        std::filesystem::create_directories(folder / "data/calendars");
        write(folder / "data/calendars/home.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"
                                                  "X-WR-CALNAME:Home Sweet Home\r\n"
                                                  "END:VCALENDAR\r\n");
        if (pageType() == G_TYPE_INVALID) {
            throw std::runtime_error("the module cannot be loaded");
        }
    }
    ~PreferencesTest() override {
        if (page != nullptr) {
            closePage();
        }
    }

    void openPage() {
        page = GTK_WIDGET(g_object_new(pageType(), nullptr));
        g_object_add_weak_pointer(G_OBJECT(page), reinterpret_cast<gpointer*>(&page));
        present(page);
    }
    void closePage() {
        close(page);
        EXPECT_TRUE(runUntil([this] { return page == nullptr; })) << "the page is not destroyed";
    }

    std::vector<std::string> groupTitles() const {
        std::vector<std::string> titles;
        for (GtkWidget* const widget : allWidgets(page)) {
            const char* const title =
                ADW_IS_PREFERENCES_GROUP(widget)
                    ? adw_preferences_group_get_title(ADW_PREFERENCES_GROUP(widget))
                    : nullptr;
            if (title != nullptr && *title != '\0') {
                titles.emplace_back(title);
            }
        }
        return titles;
    }
    std::vector<std::string> rowTitles() const {
        std::vector<std::string> titles;
        for (GtkWidget* const widget : allWidgets(page)) {
            if (ADW_IS_PREFERENCES_ROW(widget)) {
                titles.emplace_back(adw_preferences_row_get_title(ADW_PREFERENCES_ROW(widget)));
            }
        }
        return titles;
    }
    GtkWidget* row(const std::string& title) const {
        for (GtkWidget* const widget : allWidgets(page)) {
            if (ADW_IS_PREFERENCES_ROW(widget) &&
                adw_preferences_row_get_title(ADW_PREFERENCES_ROW(widget)) == title) {
                return widget;
            }
        }
        throw std::runtime_error("no row has the title " + title);
    }
    bool isOn(const std::string& title) const {
        for (GtkWidget* const widget : allWidgets(row(title))) {
            if (GTK_IS_SWITCH(widget)) {
                return gtk_switch_get_active(GTK_SWITCH(widget)) != FALSE;
            }
        }
        throw std::runtime_error("no switch is in the row " + title);
    }
    bool becomesOn(const std::string& title, bool expected) const {
        return runUntil([&] { return isOn(title) == expected; }, patience);
    }
    // As a touch of the row does.
    void touch(const std::string& title) const {
        adw_action_row_activate(ADW_ACTION_ROW(row(title)));
    }

    std::string settings() const { return contentOf(settingsFile); }
    bool settingsBecome(const testing::Matcher<std::string>& expected) const {
        return runUntil([&] { return expected.Matches(settings()); }, patience);
    }

    TemporaryFolder folder;
    const std::string settingsFile =
        folder / "config/quorvel/Preferences/org.quorvel.quorvelprefs.plist";
    const EnvironmentVariable dataHome{"XDG_DATA_HOME", (folder / "data").c_str()};
    const EnvironmentVariable configHome{"XDG_CONFIG_HOME", (folder / "config").c_str()};
    const EnvironmentVariable cacheHome{"XDG_CACHE_HOME", (folder / "cache").c_str()};
    const EnvironmentVariable home{"HOME", folder.path().c_str()};
    GtkWidget* page = nullptr; // null after it was destroyed
};

TEST_F(PreferencesTest, ShowsTheGroupsOfTheSettings) {
    openPage();
    EXPECT_TRUE(g_type_is_a(pageType(), preferencesHostType()));
    EXPECT_THAT(groupTitles(), ElementsAre("Lock Screen", "Look", "Rows", "Icon", "What Is Shown",
                                           "Calendars", "Pulling a Row", "All Settings"));
}

TEST_F(PreferencesTest, WritesAChangedSettingToTheFile) {
    openPage();
    EXPECT_FALSE(std::filesystem::exists(settingsFile));
    EXPECT_FALSE(isOn("Show locations"));
    touch("Show locations");
    EXPECT_TRUE(settingsBecome(testing::ContainsRegex("<key>displayLocation</key>\\s*<true */>")))
        << settings();
    touch("Show locations");
    EXPECT_TRUE(settingsBecome(testing::ContainsRegex("<key>displayLocation</key>\\s*<false */>")))
        << settings();
}

TEST_F(PreferencesTest, WritesAChosenValueToTheFile) {
    openPage();
    adw_combo_row_set_selected(ADW_COMBO_ROW(row("Pull action")), 2);
    EXPECT_TRUE(
        settingsBecome(testing::ContainsRegex("<key>swipeAction</key>\\s*<integer>2</integer>")))
        << settings();
}

TEST_F(PreferencesTest, UndoesAChange) {
    openPage();
    touch("Lines between rows");
    EXPECT_TRUE(settingsBecome(HasSubstr("showSeparatorLines")));
    EXPECT_TRUE(gtk_widget_activate_action(page, "settings.undo", nullptr));
    EXPECT_TRUE(settingsBecome(Not(HasSubstr("showSeparatorLines")))) << settings();
    EXPECT_TRUE(becomesOn("Lines between rows", true));
}

TEST_F(PreferencesTest, FollowsTheFile) {
    openPage();
    EXPECT_FALSE(isOn("Show locations"));
    std::filesystem::create_directories(std::filesystem::path(settingsFile).parent_path());
    replace(settingsFile,
            "<plist version=\"1.0\"><dict><key>displayLocation</key><true/></dict></plist>");
    EXPECT_TRUE(becomesOn("Show locations", true));
}

// The command, which lists them, is found from the place of the module.
TEST_F(PreferencesTest, ListsTheUsersCalendars) {
    openPage();
    EXPECT_TRUE(runUntil(
        [this] { return testing::Value(rowTitles(), Contains("Home Sweet Home")); }, patience))
        << testing::PrintToString(rowTitles());
}

TEST_F(PreferencesTest, ChangesWhatTheLockScreenShows) {
    const freedesktop::ObjectHandle<GSettings> shell(g_settings_new(shellSchema));
    openPage();
    EXPECT_TRUE(isOn("Show what the events are about"));
    touch("Show what the events are about");
    EXPECT_TRUE(runUntil([&] { return g_settings_get_boolean(shell.get(), detailsKey) == FALSE; },
                         patience));
    g_settings_reset(shell.get(), detailsKey);
    EXPECT_TRUE(becomesOn("Show what the events are about", true));
}

TEST_F(PreferencesTest, NamesADamagedFileAndLeavesItAlone) {
    const std::string damaged = "bplist00\x01\xff torn";
    std::filesystem::create_directories(std::filesystem::path(settingsFile).parent_path());
    write(settingsFile, damaged);
    openPage();
    EXPECT_NE(gtk_widget_get_visible(row("The settings cannot be changed")), FALSE);
    touch("Show locations");
    runFor(0.5);
    EXPECT_EQ(settings(), damaged);
}

TEST_F(PreferencesTest, MayBeClosedAtAnyTimeAndLeavesNoFileOpen) {
    const auto round = [this](double seconds) {
        openPage();
        runFor(seconds);
        closePage();
    };
    round(1);
    runFor(0.3);
    const std::size_t before = openFiles();
    for (const double seconds : {0.0, 0.01, 0.05, 0.2, 0.5}) {
        round(seconds);
    }
    EXPECT_TRUE(runUntil([&] { return openFiles() <= before; }))
        << openFiles() << " files, not " << before;
}

} // namespace
} // namespace quorvel::phosh
