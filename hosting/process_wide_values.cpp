#include "hosting/process_wide_values.h"

#include <array>

#include "agenda/settings.h"
#include "cell/key_values.h"

namespace quorvel {

using platform::KeyValue;

namespace {

struct NamedValue {
    std::string_view name;
    KeyValue (*value)();
};

// In the order of declaration.
constexpr std::array namedValues{
    NamedValue{"limitMaxHeight", [] { return KeyValue(settings::limitMaxHeight); }},
    NamedValue{"customLaunchAppBundleID",
               [] { return keyValueOf(settings::customLaunchAppBundleID); }},
    NamedValue{"showSeparatorLines", [] { return KeyValue(settings::showSeparatorLines); }},
    NamedValue{"rightAlignedDate", [] { return KeyValue(settings::rightAlignedDate); }},
    NamedValue{"onlySelectedCalendars", [] { return KeyValue(settings::onlySelectedCalendars); }},
    NamedValue{"displayLocation", [] { return KeyValue(settings::displayLocation); }},
    NamedValue{"sameHeightRows", [] { return KeyValue(settings::sameHeightRows); }},
    NamedValue{"titleColorSameAsCalendarColor",
               [] { return KeyValue(settings::titleColorSameAsCalendarColor); }},
    NamedValue{"textColor", [] { return keyValueOf(settings::textColor); }},
    NamedValue{"subtitleTextColor", [] { return keyValueOf(settings::subtitleTextColor); }},
    NamedValue{"dateTextColor", [] { return keyValueOf(settings::dateTextColor); }},
    NamedValue{"textSize", [] { return KeyValue(settings::textSize); }},
    NamedValue{"subtitleTextSize", [] { return KeyValue(settings::subtitleTextSize); }},
    NamedValue{"dateTextSize", [] { return KeyValue(settings::dateTextSize); }},
    NamedValue{"daysToDisplay", [] { return KeyValue(settings::daysToDisplay); }},
    NamedValue{"maxEventsToDisplay", [] { return KeyValue(settings::maxEventsToDisplay); }},
    NamedValue{"iconFile", [] { return keyValueOf(settings::iconFile); }},
    NamedValue{"iconRoundingNeeded", [] { return KeyValue(settings::iconRoundingNeeded); }},
    NamedValue{"cellWithoutSubtitleHeight",
               [] { return KeyValue(settings::cellWithoutSubtitleHeight); }},
    NamedValue{"cellWithSubtitleHeight", [] { return KeyValue(settings::cellWithSubtitleHeight); }},
};

} // namespace

std::vector<std::string_view> ProcessWideValues::keys() const {
    std::vector<std::string_view> names;
    names.reserve(namedValues.size());
    for (const NamedValue& entry : namedValues) {
        names.push_back(entry.name);
    }
    return names;
}

KeyValue ProcessWideValues::valueForKey(std::string_view key) const {
    for (const NamedValue& entry : namedValues) {
        if (entry.name == key) {
            return entry.value();
        }
    }
    return {};
}

} // namespace quorvel
