#include "shells/settings/setting_order.h"

#include <algorithm>
#include <array>

#include "shells/settings/settings_model.h"

namespace quorvel::settings_pages {

using freedesktop::SettingDescription;

namespace {

struct Dependency {
    std::string_view key;
    std::string_view on;
    std::string_view value; // of the other one, in the form of settingText()
};

constexpr std::array<Dependency, 5> dependencies{{
    {"maxHeight", "limitMaxHeight", "true"},
    {"sameHeightRows", "displayLocation", "true"},
    {"subtitleTextColor", "displayLocation", "true"},
    {"subtitleTextSize", "displayLocation", "true"},
    {"customLaunchAppBundleID", "swipeAction", "3"},
}};

const Dependency* dependencyOf(std::string_view key) {
    const auto* const found = std::ranges::find(dependencies, key, &Dependency::key);
    return found != dependencies.end() ? found : nullptr;
}

void appendOnce(std::vector<const SettingDescription*>& settings,
                const SettingDescription& setting) {
    if (std::ranges::find(settings, &setting) == settings.end()) {
        settings.push_back(&setting);
    }
}

} // namespace

bool hasEffect(std::string_view key, const SettingsModel& model) {
    const Dependency* const dependency = dependencyOf(key);
    const SettingDescription* const other =
        dependency != nullptr ? freedesktop::settingDescription(dependency->on) : nullptr;
    return other == nullptr || model.textOf(*other) == dependency->value;
}

std::vector<std::string_view> settingGroups() {
    std::vector<std::string_view> groups{"look", "rows", "icon", "events", "calendars", "pull"};
    for (const SettingDescription& setting : freedesktop::settingDescriptions()) {
        if (std::ranges::find(groups, setting.group) == groups.end()) {
            groups.push_back(setting.group);
        }
    }
    return groups;
}

std::vector<const SettingDescription*> settingsOfGroup(std::string_view group) {
    std::vector<const SettingDescription*> settings;
    for (const SettingDescription& setting : freedesktop::settingDescriptions()) {
        if (setting.group != group) {
            continue;
        }
        const Dependency* const dependency = dependencyOf(setting.key);
        const SettingDescription* const other =
            dependency != nullptr ? freedesktop::settingDescription(dependency->on) : nullptr;
        if (other != nullptr && other->group == group) {
            appendOnce(settings, *other);
        }
        appendOnce(settings, setting);
    }
    return settings;
}

} // namespace quorvel::settings_pages
