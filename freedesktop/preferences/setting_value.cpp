#include "freedesktop/preferences/setting_value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "base/ascii_text.h"
#include "base/number_text.h"
#include "base/translatable_text.h"
#include "base/utf8.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/xml_values.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListValue;

bool isWithin(const SettingDescription& setting, double number) {
    return std::isfinite(number) && number >= setting.least.value_or(number) &&
           number <= setting.most.value_or(number);
}

// Absent: the text is no such number as a whole.
std::optional<std::int64_t> integerOf(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

std::optional<bool> booleanOf(std::string_view text) {
    const std::string word = asciiLowerCase(text);
    if (word == "true" || word == "yes" || word == "on") {
        return true;
    }
    if (word == "false" || word == "no" || word == "off") {
        return false;
    }
    return std::nullopt;
}

// By its value or its label, in English or the user's language. Null: there is no such choice.
const SettingChoice* choiceNamed(const SettingDescription& setting, std::string_view text) {
    const std::string word = asciiLowerCase(text);
    const auto found = std::ranges::find_if(setting.choices, [&](const SettingChoice& choice) {
        return asciiLowerCase(choice.value) == word || asciiLowerCase(choice.label) == word ||
               asciiLowerCase(translated(std::string(choice.label))) == word;
    });
    return found == setting.choices.end() ? nullptr : &*found;
}

const SettingChoice* choiceWithValue(const SettingDescription& setting, std::string_view value) {
    const auto found = std::ranges::find(setting.choices, value, &SettingChoice::value);
    return found == setting.choices.end() ? nullptr : &*found;
}

// A property list in XML can hold it.
bool isStorable(char32_t character) {
    const bool isControl = character < 0x20 && character != '\t' && character != '\n';
    return !isControl && character != 0xFFFE && character != 0xFFFF;
}

bool isStorable(std::string_view text) {
    while (!text.empty()) {
        const DecodedCharacter decoded = decodeCharacter(text);
        if (!decoded.character || !isStorable(*decoded.character)) {
            return false;
        }
        text.remove_prefix(decoded.length);
    }
    return true;
}

std::optional<PropertyListValue> valueOfFreeText(const SettingDescription& setting,
                                                 std::string_view text) {
    const bool isPossible = setting.takesPaths ? text.starts_with('/') : setting.choices.empty();
    if (!isPossible || !isStorable(text)) {
        return std::nullopt;
    }
    return PropertyListValue{std::string(text)};
}

std::optional<PropertyListValue> valueOfNumber(const SettingDescription& setting,
                                               std::string_view text) {
    if (setting.kind == SettingKind::number) {
        const auto number = wholeNumber(text);
        return number && isWithin(setting, *number) ? std::optional(PropertyListValue{*number})
                                                    : std::nullopt;
    }
    const auto number = integerOf(text);
    return number && isWithin(setting, static_cast<double>(*number))
               ? std::optional(PropertyListValue{*number})
               : std::nullopt;
}

// `text` is the value of a choice, or is typed where there are none.
std::optional<PropertyListValue> valueOf(const SettingDescription& setting, std::string_view text) {
    if (setting.kind == SettingKind::boolean) {
        const auto truth = booleanOf(text);
        return truth ? std::optional(PropertyListValue{*truth}) : std::nullopt;
    }
    return setting.kind == SettingKind::text ? valueOfFreeText(setting, text)
                                             : valueOfNumber(setting, text);
}

bool hasKind(SettingKind kind, const PropertyListValue& value) {
    switch (kind) {
    case SettingKind::boolean:
        return std::holds_alternative<bool>(value.value);
    case SettingKind::number:
        return std::holds_alternative<double>(value.value) ||
               std::holds_alternative<std::int64_t>(value.value);
    case SettingKind::integer:
    case SettingKind::colour:
        return std::holds_alternative<std::int64_t>(value.value);
    case SettingKind::text:
        break;
    }
    return std::holds_alternative<std::string>(value.value);
}

bool isPossible(const SettingDescription& setting, const PropertyListValue& value) {
    if (setting.kind == SettingKind::boolean) {
        return true;
    }
    if (!setting.choices.empty()) {
        const std::string text = settingText(value);
        return choiceWithValue(setting, text) != nullptr ||
               (setting.takesPaths && text.starts_with('/'));
    }
    if (const auto* const real = std::get_if<double>(&value.value)) {
        return isWithin(setting, *real);
    }
    if (const auto* const number = std::get_if<std::int64_t>(&value.value)) {
        return isWithin(setting, static_cast<double>(*number));
    }
    return true;
}

// In English.
const char* kindName(const PropertyListValue& value) {
    constexpr std::array names{
        translatable("a boolean"), translatable("a whole number"), translatable("a number"),
        translatable("a text"),    translatable("a date"),         translatable("data"),
        translatable("an array"),  translatable("a dictionary"),   translatable("a whole number")};
    static_assert(names.size() == std::variant_size_v<decltype(value.value)>);
    return names[value.value.index()];
}

std::string listOfChoices(const SettingDescription& setting) {
    std::string list;
    for (const SettingChoice& choice : setting.choices) {
        if (choice.value.starts_with('/')) {
            continue; // a path among paths
        }
        list += list.empty() ? "" : ", ";
        list += setting.kind == SettingKind::colour ? choice.label : choice.value;
        if (setting.kind != SettingKind::colour) {
            list += " (" + translated(std::string(choice.label)) + ')';
        }
    }
    return list;
}

Error wrongValue(const SettingDescription& setting, std::string_view text) {
    return {
        filled(translated("{1} cannot be '{2}'"), {setting.key, text}), {}, settingAdvice(setting)};
}

} // namespace

std::string settingAdvice(const SettingDescription& setting) {
    if (!setting.choices.empty()) {
        const char* const advice = setting.takesPaths
                                       ? translated("give the full path of a picture or one of {1}")
                                       : translated("give one of {1}");
        return filled(advice, {listOfChoices(setting)});
    }
    if (setting.kind == SettingKind::boolean) {
        return translated("give true or false");
    }
    if (setting.kind == SettingKind::text) {
        return translated("give a text in UTF-8 without control characters");
    }
    const char* const advice = setting.kind == SettingKind::integer
                                   ? translated("give a whole number from {1} to {2}")
                                   : translated("give a number from {1} to {2}");
    return filled(advice,
                  {textOfReal(setting.least.value_or(0)), textOfReal(setting.most.value_or(0))});
}

Result<PropertyListValue> parseSettingValue(const SettingDescription& setting,
                                            std::string_view text) {
    const SettingChoice* const choice = choiceNamed(setting, text);
    const bool needsChoice = !setting.choices.empty() && !setting.takesPaths;
    if (choice != nullptr && setting.kind == SettingKind::text) {
        return PropertyListValue{std::string(choice->value)};
    }
    auto value = needsChoice && choice == nullptr
                     ? std::nullopt
                     : valueOf(setting, choice != nullptr ? choice->value : text);
    if (!value) {
        return wrongValue(setting, text);
    }
    return *std::move(value);
}

std::string settingText(const PropertyListValue& value) {
    return std::visit(
        [&](const auto& held) -> std::string {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, bool>) {
                return held ? "true" : "false";
            } else if constexpr (std::is_same_v<Held, double>) {
                return textOfReal(held);
            } else if constexpr (std::is_arithmetic_v<Held>) {
                return std::to_string(held);
            } else if constexpr (std::is_same_v<Held, std::string>) {
                return held;
            } else {
                return translated(kindName(value));
            }
        },
        value.value);
}

std::optional<std::string_view> settingLabel(const SettingDescription& setting,
                                             const PropertyListValue& value) {
    const SettingChoice* const choice = choiceWithValue(setting, settingText(value));
    return choice != nullptr ? std::optional(choice->label) : std::nullopt;
}

std::optional<Error> checkSettingValue(const SettingDescription& setting,
                                       const PropertyListValue& value) {
    if (!hasKind(setting.kind, value)) {
        return Error{filled(translated("{1} is {2}"), {setting.key, translated(kindName(value))}),
                     {},
                     settingAdvice(setting)};
    }
    return isPossible(setting, value) ? std::nullopt
                                      : std::optional(wrongValue(setting, settingText(value)));
}

} // namespace quorvel::freedesktop
