#include "freedesktop/preferences/calendar_selection.h"

#include <cstddef>
#include <optional>
#include <utility>

#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/property_list_change.h"
#include "freedesktop/preferences/property_list_edit.h"
#include "freedesktop/preferences/reported_property_list.h"
#include "freedesktop/preferences/settings_file.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListDictionary;

constexpr std::string_view followKey = "onlySelectedCalendars";

std::string pathIn(const std::string& folder) {
    return folder + '/' + std::string(calendarSelectionFileName);
}

bool followsDesktop(const PropertyListDictionary& settings) {
    const auto* const follows = platform::objectForKey(settings, followKey);
    return follows == nullptr || platform::boolValue(*follows);
}

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

Result<PropertyListArray> readArray(const std::optional<std::vector<std::byte>>& bytes,
                                    const std::string& path) {
    return bytes ? parseArray(*bytes, path) : PropertyListArray();
}

Result<std::optional<std::string>> edited(const std::optional<std::vector<std::byte>>& bytes,
                                          const std::vector<std::string>& identifiers,
                                          const std::string& path) {
    const auto before = readArray(bytes, path);
    if (!before) {
        return before.error();
    }
    if (textsOf(*before) == identifiers) {
        return std::optional<std::string>();
    }
    PropertyListArray after;
    for (const std::string& identifier : identifiers) {
        after.push_back({identifier});
    }
    auto changed = bytes ? changedArray(*bytes, *before, after) : newArray(after);
    if (!changed) {
        return Error{changed.error().what, {}, translated("change it with an editor")};
    }
    return std::optional(*std::move(changed));
}

} // namespace

Result<CalendarSelection> readCalendarSelection(const std::string& preferencesFolder) {
    const auto settings = SettingsFile(preferencesFolder).read();
    if (!settings) {
        return settings.error();
    }
    const std::string path = pathIn(preferencesFolder);
    const auto bytes = readListBytes(path);
    if (!bytes) {
        return bytes.error();
    }
    const auto list = readArray(*bytes, path);
    if (!list) {
        return list.error();
    }
    return CalendarSelection{followsDesktop(*settings), textsOf(*list)};
}

Result<void> writeCalendarSelection(const std::string& preferencesFolder,
                                    const CalendarSelection& selection) {
    const SettingsFile file(preferencesFolder);
    const auto settings = file.read();
    if (!settings) {
        return settings.error();
    }
    const std::string path = pathIn(preferencesFolder);
    const auto changed = changePropertyListFile(
        path, [&](const auto& bytes) { return edited(bytes, selection.identifiers, path); });
    if (!changed || followsDesktop(*settings) == selection.followsDesktop) {
        return changed;
    }
    return file.change({{std::string(followKey), {{selection.followsDesktop}}}});
}

} // namespace quorvel::freedesktop
