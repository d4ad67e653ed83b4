// Every text of the settings' pages, in one place for translators, in English: translated()
// where it is used. The texts of the settings themselves come from their table.
#pragma once

#include "base/translatable_text.h"

namespace quorvel::settings_pages::text {

constexpr const char* windowTitle = translatable("Quorvel Settings");
constexpr const char* pageTitle = translatable("Settings");

constexpr const char* groupLook = translatable("Look");
constexpr const char* groupRows = translatable("Rows");
constexpr const char* groupIcon = translatable("Icon");
constexpr const char* groupEvents = translatable("What Is Shown");
constexpr const char* groupCalendars = translatable("Calendars");
constexpr const char* groupPull = translatable("Pulling a Row");
constexpr const char* groupReset = translatable("All Settings");

constexpr const char* colourOfHost = translatable("Automatic");
constexpr const char* otherValue = translatable("Another value");
constexpr const char* chooseFile = translatable("_Choose…");
constexpr const char* pictureFile = translatable("Picture file");
constexpr const char* noFileChosen = translatable("No file chosen");
constexpr const char* choosePicture = translatable("Choose a Picture");
constexpr const char* open = translatable("_Open");
constexpr const char* cancel = translatable("_Cancel");
constexpr const char* pictures = translatable("Pictures");

constexpr const char* noApplication = translatable("None chosen");
constexpr const char* chooseApplication = translatable("Choose an Application");
constexpr const char* searchApplications = translatable("Search applications");
constexpr const char* noApplicationFound = translatable("No application matches");

constexpr const char* followMeaning = translatable(
    "Show the calendars that are switched on in the calendar application. Switch this off to "
    "choose them here.");
constexpr const char* calendarsUnreadable = translatable("it has an unknown form");
constexpr const char* calendarsLoading = translatable("The calendars are being read…");
constexpr const char* noCalendars = translatable("No calendars were found");
constexpr const char* untitledCalendar = translatable("Untitled calendar");
constexpr const char* addCalendars = translatable("How to Add Calendars");
constexpr const char* addCalendarsTitle = translatable("Add Calendars");
constexpr const char* addCalendarsMeaning =
    translatable("For each kind of calendar: what to do, and when it is shown.");

constexpr const char* subscribeTo = translatable("Subscribe to a calendar on the web");
constexpr const char* subscribe = translatable("Subscribe");
constexpr const char* subscribing = translatable("The calendar is being fetched…");
constexpr const char* notSubscribed = translatable("The calendar was not added");
constexpr const char* unsubscribe = translatable("_Unsubscribe");
constexpr const char* unsubscribeMeaning =
    translatable("The calendar is no longer shown here. To subscribe again, you need its address.");

constexpr const char* preview = translatable("Preview of the agenda with these settings");
constexpr const char* previewMine = translatable("_My Calendars");
constexpr const char* previewSample = translatable("_Sample");
constexpr const char* noReason = translatable("the program ended without a reason");
constexpr const char* programTooSlow = translatable("the program took too long");

constexpr const char* cannotChange = translatable("The settings cannot be changed");
constexpr const char* tryAgain = translatable("_Try Again");

constexpr const char* allSettings = translatable("All settings");
constexpr const char* undo = translatable("Undo");
constexpr const char* undoLatest = translatable("Undo the latest change");
constexpr const char* resetAll = translatable("_Reset All");
constexpr const char* resetAllTitle = translatable("Reset all settings");
constexpr const char* resetAllMeaning =
    translatable("Every setting has its default again. This can be undone.");

constexpr const char* menu = translatable("Menu");
constexpr const char* shortcuts = translatable("_Keyboard Shortcuts");
constexpr const char* about = translatable("_About Quorvel");
constexpr const char* applicationName = "Quorvel";
constexpr const char* applicationSummary = translatable("Your upcoming events at a glance");

constexpr const char* shortcutsTitle = translatable("Keyboard Shortcuts");
constexpr const char* shortcutUndo = translatable("Undo the latest change");
constexpr const char* shortcutMenu = translatable("Open the menu");
constexpr const char* shortcutShortcuts = translatable("Show the keyboard shortcuts");
constexpr const char* shortcutBack = translatable("Close a dialog or a list");
constexpr const char* shortcutClose = translatable("Close the window");
constexpr const char* shortcutQuit = translatable("Quit");

constexpr const char* welcomeTitle = translatable("No Calendars Yet");
constexpr const char* welcomeMeaning =
    translatable("Quorvel shows the calendars that you have already. Choose where yours are.");
constexpr const char* goToSettings = translatable("_Go to the Settings");
constexpr const char* openGuide = translatable("_Open the Guide");

constexpr const char* kindDesktop = translatable("GNOME Calendar or Evolution");
constexpr const char* kindDesktopSteps = translatable(
    "There is nothing to do. Calendars that these applications show are found by themselves, and "
    "a new event is shown at once.");
constexpr const char* kindOnline = translatable("Nextcloud or Google");
constexpr const char* kindOnlineSteps = translatable(
    "Add the account in Settings → Online Accounts and switch Calendar on. Without online "
    "accounts, let vdirsyncer copy the calendars into ~/.calendars; the guide has a "
    "configuration.");
constexpr const char* kindThunderbird = translatable("Thunderbird");
constexpr const char* kindThunderbirdSteps = translatable(
    "There is nothing to do. Its calendars are found in the Thunderbird profile and read only.");
constexpr const char* kindKde = translatable("KDE");
constexpr const char* kindKdeSteps = translatable(
    "Store the calendar as a file or a folder of .ics files in ~/.calendars, or copy it there.");
constexpr const char* kindFile = translatable("An .ics file");
constexpr const char* kindFileSteps =
    translatable("Put the file into the folder ~/.calendars. It is shown as soon as it is there.");
constexpr const char* kindSubscription = translatable("A calendar on the web");
constexpr const char* kindSubscriptionSteps = translatable(
    "Enter its address, which begins with https: or webcal:. It is read again every hour.");

// Sentences around a name.
constexpr const char* quoted = translatable("“{1}”");
constexpr const char* resetSetting = translatable("Reset “{1}”");
constexpr const char* changed = translatable("{1} changed");
constexpr const char* applicationMissing = translatable("{1} is not installed");
constexpr const char* previewFailed = translatable("There is no preview: {1}");
constexpr const char* guideNotOpened = translatable("The guide cannot be opened: {1}");
constexpr const char* unsubscribeFrom = translatable("Unsubscribe from “{1}”");
constexpr const char* unsubscribeQuestion = translatable("Unsubscribe from “{1}”?");
constexpr const char* notUnsubscribed = translatable("The subscription has not ended: {1}");
constexpr const char* neverFetched = translatable("{1}, not fetched yet");
constexpr const char* calendarsNotListed =
    translatable("The list of calendars cannot be read: {1}");

} // namespace quorvel::settings_pages::text
