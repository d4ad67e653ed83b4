// Loads the plugin's file as the shell does, and makes its widget again and again.
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtk/gtk.h>

#include "tests/freedesktop/session/session_testing.h"
#include "tests/freedesktop/session/settings_writer.h"

namespace quorvel::phosh {
namespace {

using namespace testing_session;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// The build tree's, or that of an installation.
const char* pluginFolder() {
    const char* const folder = std::getenv("QUORVEL_TESTED_PLUGIN_FOLDER");
    return folder != nullptr ? folder : QUORVEL_PLUGIN_FOLDER;
}

// Loaded once per process, as by the shell.
GType pluginType() {
    static const GType type = [] {
        GIOExtensionPoint* const point = g_io_extension_point_register("phosh-lockscreen-widget");
        g_io_modules_scan_all_in_directory(pluginFolder());
        GIOExtension* const plugin = g_io_extension_point_get_extension_by_name(point, "quorvel");
        return plugin != nullptr ? g_io_extension_get_type(plugin) : G_TYPE_INVALID;
    }();
    return type;
}

std::size_t entriesOf(const char* folder) {
    const std::filesystem::directory_iterator begin(folder);
    return static_cast<std::size_t>(std::distance(begin, {}));
}

class PluginTest : public testing::Test {
protected:
    PluginTest() {
        std::filesystem::create_directories(calendars);
        std::filesystem::create_directories(folder / "config/quorvel/Preferences");
        writeCalendar("Dentist", "Main Street 12");
        if (pluginType() == G_TYPE_INVALID) {
            throw std::runtime_error("the plugin cannot be loaded");
        }
    }

    // Ends in an hour.
    void writeCalendar(const std::string& title, const std::string& location) const {
        const std::time_t now = std::time(nullptr);
        replace(calendars + "/home.ics",
                "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:a\r\nDTSTART:" +
                    utc(now - 3600) + "\r\nDTEND:" + utc(now + 3600) + "\r\nSUMMARY:" + title +
                    "\r\nLOCATION:" + location + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    }
    static std::string utc(std::time_t time) {
        char text[32];
        std::tm parts{};
        gmtime_r(&time, &parts);
        return {text, std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &parts)};
    }

    // The shell locks: it makes the widget. The user turns to its page: it is mapped.
    void lock() {
        window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
        gtk_window_set_default_size(GTK_WINDOW(window), 360, 500);
        agenda = GTK_WIDGET(g_object_new(pluginType(), nullptr));
        gtk_container_add(GTK_CONTAINER(window), agenda);
        gtk_widget_show(agenda);
    }
    void turnToPage() { gtk_widget_show(window); }
    void unlock() {
        gtk_widget_destroy(window);
        window = nullptr;
    }

    // What a screen reader reads.
    AtkObject* list() const {
        GList* const children = gtk_container_get_children(GTK_CONTAINER(agenda));
        AtkObject* const found = gtk_widget_get_accessible(GTK_WIDGET(children->data));
        g_list_free(children);
        return found;
    }
    std::string notices() const {
        const char* const description = atk_object_get_description(list());
        return description != nullptr ? description : "";
    }
    std::vector<std::string> rows() const {
        std::vector<std::string> names;
        for (int row = 0; row < atk_object_get_n_accessible_children(list()); ++row) {
            AtkObject* const child = atk_object_ref_accessible_child(list(), row);
            names.emplace_back(atk_object_get_name(child));
            g_object_unref(child);
        }
        return names;
    }
    bool showsRows(std::size_t count) {
        return runUntil([&] { return rows().size() == count; });
    }

    TemporaryFolder folder;
    const std::string calendars = folder / "data/calendars";
    const EnvironmentVariable dataHome{"XDG_DATA_HOME", (folder / "data").c_str()};
    const EnvironmentVariable configHome{"XDG_CONFIG_HOME", (folder / "config").c_str()};
    const EnvironmentVariable cacheHome{"XDG_CACHE_HOME", (folder / "cache").c_str()};
    const EnvironmentVariable home{"HOME", folder.path().c_str()};
    GtkWidget* window = nullptr;
    GtkWidget* agenda = nullptr;
};

TEST_F(PluginTest, ShowsTheUsersEvents) {
    lock();
    EXPECT_THAT(rows(), IsEmpty()); // nothing is read on the shell's thread
    turnToPage();
    EXPECT_TRUE(showsRows(1));
    EXPECT_THAT(rows(), ElementsAre(HasSubstr("Dentist")));
    int height = 0;
    gtk_widget_get_preferred_height(agenda, nullptr, &height);
    EXPECT_GT(height, 20);
    unlock();
}

TEST_F(PluginTest, FollowsTheCalendarsWhileItsPageIsShown) {
    lock();
    turnToPage();
    EXPECT_TRUE(showsRows(1));
    runFor(0.3);
    writeCalendar("Lunch", "");
    EXPECT_TRUE(runUntil([&] { return rows().size() == 1 && rows()[0].starts_with("Lunch"); }));
    unlock();
}

TEST_F(PluginTest, HidesDetailsWhereTheUserWishes) {
    SettingsWriter settings("org.quorvel.shell");
    settings.set("show-details-when-locked", false);
    lock();
    turnToPage();
    EXPECT_TRUE(showsRows(1));
    EXPECT_THAT(rows(), ElementsAre(HasSubstr("Busy")));
    EXPECT_THAT(rows()[0], testing::Not(HasSubstr("Main Street")));
    runFor(0.2);
    settings.set("show-details-when-locked", true);
    EXPECT_TRUE(runUntil([&] { return rows()[0].starts_with("Dentist"); }));
    unlock();
}

TEST_F(PluginTest, TheFirstFrameHasNoDetailsThatWereHiddenBefore) {
    SettingsWriter settings("org.quorvel.shell");
    lock();
    EXPECT_TRUE(showsRows(1));
    EXPECT_THAT(rows(), ElementsAre(HasSubstr("Dentist")));
    settings.set("show-details-when-locked", false); // its page is not shown yet
    EXPECT_TRUE(runUntil([&] { return rows()[0].starts_with("Busy"); }));
    unlock();
}

TEST_F(PluginTest, HidesTheNamesOfCalendarsWhereTheUserWishes) {
    write(calendars + "/secret.ics", "no calendar");
    SettingsWriter settings("org.quorvel.shell");
    lock();
    turnToPage();
    EXPECT_TRUE(showsRows(1));
    EXPECT_THAT(notices(), HasSubstr("secret.ics"));
    settings.set("show-details-when-locked", false);
    EXPECT_TRUE(runUntil([&] { return notices().empty(); }));
    unlock();
}

TEST_F(PluginTest, SurvivesDamagedSettings) {
    write(folder / "config/quorvel/Preferences/org.quorvel.quorvelprefs.plist",
          "bplist00\x01\xff torn");
    lock();
    turnToPage();
    runFor(0.5);
    EXPECT_NE(gtk_widget_get_mapped(agenda), FALSE);
    unlock();
}

TEST_F(PluginTest, MayBeDestroyedAtAnyTime) {
    for (const double seconds : {0.0, 0.002, 0.01, 0.05}) {
        lock();
        unlock();
        lock();
        turnToPage();
        runFor(seconds);
        unlock();
    }
    lock();
    turnToPage();
    EXPECT_TRUE(showsRows(1)); // those before do not block this one
    unlock();
}

TEST_F(PluginTest, NothingRunsWhileItsPageIsNotShown) {
    lock();
    turnToPage();
    EXPECT_TRUE(showsRows(1));
    gtk_widget_hide(window);
    runFor(0.5);
    EXPECT_EQ(wakeUpsDuring(0.5), 0);
    unlock();
}

TEST_F(PluginTest, AHundredRoundsLeaveNoThreadAndNoFileBehind) {
    const auto round = [&] {
        lock();
        turnToPage();
        EXPECT_TRUE(showsRows(1));
        unlock();
    };
    for (int i = 0; i < 3; ++i) {
        round();
    }
    const auto tasks = [] { return entriesOf("/proc/self/task"); };
    const auto files = [] { return entriesOf("/proc/self/fd"); };
    runFor(0.3);
    const std::size_t tasksBefore = tasks();
    const std::size_t filesBefore = files();
    for (int i = 0; i < 100; ++i) {
        round();
    }
    EXPECT_TRUE(runUntil([&] { return tasks() <= tasksBefore && files() <= filesBefore; }))
        << tasks() << " threads, not " << tasksBefore << "; " << files() << " files, not "
        << filesBefore;
}

} // namespace
} // namespace quorvel::phosh
