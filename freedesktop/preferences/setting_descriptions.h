// Describes every setting: the tables data/settings.tsv and data/colours.tsv as values.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace quorvel::freedesktop {

enum class SettingKind { boolean, integer, number, text, colour };

struct SettingChoice {
    std::string_view value; // in the form of settingText()
    std::string_view label; // a few words; of a colour its name
};

// Texts are English.
struct SettingDescription {
    std::string_view key;
    SettingKind kind = SettingKind::text;
    std::optional<double> least; // inclusive; absent: no limit
    std::optional<double> most;
    std::span<const SettingChoice> choices; // empty: all values of the kind within the limits
    bool takesPaths = false;                // also the path of a file, beside the choices
    std::string_view defaultValue;          // in the form of settingText()
    std::string_view group;   // "look", "rows", "events", "calendars", "pull" or "icon"
    std::string_view label;   // a few words
    std::string_view meaning; // sentences
};

// In the order of the table.
std::span<const SettingDescription> settingDescriptions();

// Null: there is no such key.
const SettingDescription* settingDescription(std::string_view key);

struct ColourCode {
    std::int64_t code = 0;
    std::string_view name;
    std::optional<std::array<std::uint8_t, 4>> rgba; // absent: the colour of the event's calendar
};

// In the order of the table.
std::span<const ColourCode> colourCodes();

} // namespace quorvel::freedesktop
