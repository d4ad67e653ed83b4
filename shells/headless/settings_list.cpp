#include "shells/headless/settings_list.h"

#include <cstdint>
#include <string_view>

#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/setting_value.h"
#include "shells/headless/json.h"
#include "shells/headless/terminal_text.h"

namespace quorvel::headless {

using freedesktop::SettingChoice;
using freedesktop::SettingDescription;
using freedesktop::SettingKind;
using freedesktop::translated;
using platform::PropertyListValue;

namespace {

std::string translatedText(std::string_view text) {
    return translated(std::string(text));
}

std::string_view kindName(SettingKind kind) {
    switch (kind) {
    case SettingKind::boolean:
        return "boolean";
    case SettingKind::integer:
        return "integer";
    case SettingKind::number:
        return "number";
    case SettingKind::colour:
        return "colour";
    case SettingKind::text:
        break;
    }
    return "text";
}

// "3 (white)", or the value alone; of a path that has a label, the label.
std::string valueText(const ListedSetting& setting) {
    std::string text = freedesktop::settingText(setting.value);
    const auto label = freedesktop::settingLabel(*setting.description, setting.value);
    if (!label) {
        return text;
    }
    return text.starts_with('/') ? translatedText(*label)
                                 : text + " (" + translatedText(*label) + ')';
}

Json valueJson(const PropertyListValue& value) {
    if (const auto* const truth = std::get_if<bool>(&value.value)) {
        return *truth;
    }
    if (const auto* const number = std::get_if<std::int64_t>(&value.value)) {
        return *number;
    }
    if (const auto* const real = std::get_if<double>(&value.value)) {
        return numberJson(*real);
    }
    return freedesktop::settingText(value);
}

// The value of a text in the form of settingText().
Json valueJson(const SettingDescription& setting, std::string_view text) {
    const auto value = freedesktop::parseSettingValue(setting, text);
    return value ? valueJson(*value) : Json(text);
}

Json settingJson(const ListedSetting& setting) {
    const SettingDescription& description = *setting.description;
    Json json = Json::object();
    json["key"] = description.key;
    json["type"] = kindName(description.kind);
    json["value"] = valueJson(setting.value);
    json["default"] = valueJson(description, description.defaultValue);
    json["isSet"] = setting.isSet;
    json["group"] = description.group;
    json["label"] = translatedText(description.label);
    json["meaning"] = translatedText(description.meaning);
    if (description.least && description.most) {
        json["least"] = numberJson(*description.least);
        json["most"] = numberJson(*description.most);
    }
    for (const SettingChoice& choice : description.choices) {
        json["choices"].push_back(Json{{"value", valueJson(description, choice.value)},
                                       {"label", translatedText(choice.label)}});
    }
    return json;
}

} // namespace

std::string settingsText(const std::vector<ListedSetting>& settings) {
    std::vector<std::vector<std::string>> rows{
        {translated("SETTING"), translated("VALUE"), translated("SET"), translated("WHAT IT IS")}};
    for (const ListedSetting& setting : settings) {
        rows.push_back({std::string(setting.description->key), valueText(setting),
                        setting.isSet ? translated("yes") : translated("no"),
                        translatedText(setting.description->label)});
    }
    return textInColumns(rows);
}

std::string settingsDocument(const std::vector<ListedSetting>& settings) {
    Json document = Json::array();
    for (const ListedSetting& setting : settings) {
        document.push_back(settingJson(setting));
    }
    return documentText(document);
}

std::string settingDocument(const ListedSetting& setting) {
    return documentText(settingJson(setting));
}

} // namespace quorvel::headless
