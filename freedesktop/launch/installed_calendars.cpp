#include "freedesktop/launch/installed_calendars.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "freedesktop/launch/calendar_applications.h"

namespace quorvel::freedesktop::launch {

namespace {

constexpr const char* calendarType = "text/calendar";
constexpr const char* textType = "text/plain";
constexpr std::string_view ownEntry = "org.quorvel.Open.desktop";
constexpr std::string_view ownProgram = "quorvel-open";

// Whether the command names this program, also within a script, or is a link to it.
bool runsThisProgram(GDesktopAppInfo* entry) {
    const auto command = commandOf(entry, {});
    if (!command) {
        return false;
    }
    const auto namesIt = [](const std::string& word) {
        return word.find(ownProgram) != std::string::npos;
    };
    const TextHandle program(g_find_program_in_path(command->front().c_str()));
    std::error_code absent;
    return std::any_of(command->begin(), command->end(), namesIt) ||
           (program && std::filesystem::equivalent(program.get(), "/proc/self/exe", absent));
}

// If no application handles calendars, GIO offers the text editor, because a calendar is a text.
bool isTextEditor(GDesktopAppInfo* entry) {
    const ObjectHandle<GAppInfo> editor(g_app_info_get_default_for_type(textType, FALSE));
    return editor && g_app_info_equal(G_APP_INFO(entry), editor.get()) != FALSE;
}

bool isCalendarApplication(GDesktopAppInfo* entry) {
    return nameOf(entry) != ownEntry && !runsThisProgram(entry) && !isTextEditor(entry);
}

EntryHandle entryOf(GAppInfo* application) {
    return EntryHandle(G_IS_DESKTOP_APP_INFO(application)
                           ? G_DESKTOP_APP_INFO(g_object_ref(application))
                           : nullptr);
}

// The default, or the first application for calendars if the default is none.
EntryHandle defaultApplication() {
    const ObjectHandle<GAppInfo> first(g_app_info_get_default_for_type(calendarType, FALSE));
    EntryHandle choice = entryOf(first.get());
    if (choice && isCalendarApplication(choice.get())) {
        return choice;
    }
    choice.reset();
    const ObjectListHandle<GList> others(g_app_info_get_recommended_for_type(calendarType));
    for (const GList* other = others.get(); other != nullptr && !choice; other = other->next) {
        EntryHandle candidate = entryOf(G_APP_INFO(other->data));
        if (candidate && isCalendarApplication(candidate.get())) {
            choice = std::move(candidate);
        }
    }
    return choice;
}

bool takesArguments(GDesktopAppInfo* entry) {
    return calendarApplicationOfEntry(nameOf(entry)) != CalendarApplication::other;
}

} // namespace

EntryHandle installedCalendarApplication() {
    EntryHandle choice = defaultApplication();
    if (choice && takesArguments(choice.get())) {
        return choice;
    }
    for (const char* name : {"org.gnome.Evolution.desktop", "org.gnome.Calendar.desktop"}) {
        EntryHandle entry(g_desktop_app_info_new(name));
        if (entry && isCalendarApplication(entry.get())) {
            return entry;
        }
    }
    return choice;
}

} // namespace quorvel::freedesktop::launch
