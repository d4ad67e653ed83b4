// Every text that the window itself shows or reports to screen readers, in one place for
// translators, in English: translated() where it is used. Underscores mark the mnemonics of menus.
#pragma once

#include "base/translatable_text.h"

namespace quorvel::window::text {

constexpr const char* applicationName = "Quorvel";
constexpr const char* applicationSummary = translatable("Your upcoming events at a glance");

constexpr const char* menu = translatable("Menu");
constexpr const char* settings = translatable("_Settings");
constexpr const char* refresh = translatable("_Refresh");
constexpr const char* shortcuts = translatable("_Keyboard Shortcuts");
constexpr const char* about = translatable("_About Quorvel");
constexpr const char* quit = translatable("_Quit");

constexpr const char* openEvent = translatable("_Open Event");
constexpr const char* openDay = translatable("Open _Day");
constexpr const char* copyTitle = translatable("Copy _Title");
constexpr const char* copyTime = translatable("Copy T_ime");
constexpr const char* copyPlace = translatable("Copy _Place");

constexpr const char* settingsTitle = translatable("Settings");
constexpr const char* settingsFile = translatable("The settings are the property list");
constexpr const char* settingsManual = translatable(
    "The manual page quorvel-settings(5) describes every setting. The window follows the file.");

constexpr const char* addCalendars = translatable("How to Add Calendars");
constexpr const char* manualMissing = translatable("The manual cannot be opened");
constexpr const char* linkNotOpened = translatable("No application could open this event");

constexpr const char* shortcutsOfRows = translatable("Events");
constexpr const char* shortcutsOfWindow = translatable("Window");
constexpr const char* chooseRow = translatable("Choose an event");
constexpr const char* openRow = translatable("Open the chosen event");
constexpr const char* openRowMenu = translatable("Menu of the chosen event");
constexpr const char* openMenu = translatable("Open the menu");
constexpr const char* updateWindow = translatable("Bring everything up to date");
constexpr const char* showShortcuts = translatable("Show the keyboard shortcuts");
constexpr const char* closeWindow = translatable("Close the window");
constexpr const char* quitProgram = translatable("Quit");

} // namespace quorvel::window::text
