// Every text that the window itself shows or reports to screen readers, in one place for
// translators. Underscores mark the mnemonics of menus.
#pragma once

namespace quorvel::window::text {

constexpr const char* applicationName = "Quorvel";
constexpr const char* applicationSummary = "Your upcoming events at a glance";

constexpr const char* menu = "Menu";
constexpr const char* settings = "_Settings";
constexpr const char* refresh = "_Refresh";
constexpr const char* shortcuts = "_Keyboard Shortcuts";
constexpr const char* about = "_About Quorvel";
constexpr const char* quit = "_Quit";

constexpr const char* openEvent = "_Open Event";
constexpr const char* openDay = "Open _Day";
constexpr const char* copyTitle = "Copy _Title";
constexpr const char* copyTime = "Copy T_ime";
constexpr const char* copyPlace = "Copy _Place";

constexpr const char* settingsTitle = "Settings";
constexpr const char* settingsFile = "The settings are the property list";
constexpr const char* settingsManual =
    "The manual page quorvel-settings(5) describes every setting. The window follows the file.";

constexpr const char* addCalendars = "How to Add Calendars";
constexpr const char* manualMissing = "The manual cannot be opened";
constexpr const char* linkNotOpened = "No application could open this event";

constexpr const char* shortcutsOfRows = "Events";
constexpr const char* shortcutsOfWindow = "Window";
constexpr const char* chooseRow = "Choose an event";
constexpr const char* openRow = "Open the chosen event";
constexpr const char* openRowMenu = "Menu of the chosen event";
constexpr const char* openMenu = "Open the menu";
constexpr const char* updateWindow = "Bring everything up to date";
constexpr const char* showShortcuts = "Show the keyboard shortcuts";
constexpr const char* closeWindow = "Close the window";
constexpr const char* quitProgram = "Quit";

} // namespace quorvel::window::text
