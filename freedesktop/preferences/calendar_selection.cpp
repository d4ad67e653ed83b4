#include "freedesktop/preferences/calendar_selection.h"

#include <utility>

#include "freedesktop/preferences/reported_property_list.h"
#include "freedesktop/preferences/settings_file.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;

constexpr std::string_view followKey = "onlySelectedCalendars";

// The widget converts numbers to texts, too.
std::vector<std::string> textsOf(const PropertyListArray& values) {
    std::vector<std::string> texts;
    for (const auto& value : values) {
        if (auto text = platform::stringValue(value)) {
            texts.push_back(*std::move(text));
        }
    }
    return texts;
}

} // namespace

Result<CalendarSelection> readCalendarSelection(const std::string& preferencesFolder) {
    const auto settings = SettingsFile(preferencesFolder).read();
    if (!settings) {
        return settings.error();
    }
    const auto list =
        readArrayFile(preferencesFolder + '/' + std::string(calendarSelectionFileName));
    if (!list) {
        return list.error();
    }
    const auto* const follows = platform::objectForKey(*settings, followKey);
    return CalendarSelection{follows == nullptr || platform::boolValue(*follows), textsOf(*list)};
}

} // namespace quorvel::freedesktop
