#include "freedesktop/preferences/settings_file.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "base/ascii_text.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/property_list_change.h"
#include "freedesktop/preferences/property_list_edit.h"
#include "freedesktop/preferences/reported_property_list.h"
#include "freedesktop/preferences/setting_value.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListDictionary;
using platform::PropertyListValue;

bool areSameForWidget(SettingKind kind, const PropertyListValue& first,
                      const PropertyListValue& second) {
    return kind == SettingKind::boolean
               ? platform::boolValue(first) == platform::boolValue(second)
               : platform::floatValue(first) == platform::floatValue(second);
}

// Leaves a text of which the widget makes another value.
void convertText(const SettingDescription& setting, PropertyListValue& stored) {
    const auto* const text = std::get_if<std::string>(&stored.value);
    if (text == nullptr || setting.kind == SettingKind::text) {
        return;
    }
    if (setting.kind == SettingKind::boolean && (*text == "1" || *text == "0")) {
        stored.value = platform::boolValue(stored);
        return;
    }
    const auto value = parseSettingValue(setting, *text);
    if (value && areSameForWidget(setting.kind, *value, stored)) {
        stored = *value;
    }
}

void convertTexts(PropertyListDictionary& settings) {
    for (auto& [key, stored] : settings) {
        if (const SettingDescription* const setting = settingDescription(key)) {
            convertText(*setting, stored);
        }
    }
}

// What the file would store in place of the value.
PropertyListValue storedValue(const PropertyListValue& value, PropertyListForm form) {
    return form == PropertyListForm::oldText ? asOldValue(value) : value;
}

SettingChanges differences(const PropertyListDictionary& settings, const SettingChanges& changes,
                           PropertyListForm form) {
    SettingChanges different;
    for (const auto& [key, value] : changes) {
        const PropertyListValue* const stored = platform::objectForKey(settings, key);
        const bool isSame = value ? stored != nullptr && areSame(*stored, storedValue(*value, form))
                                  : stored == nullptr;
        if (!isSame) {
            different.emplace(key, value);
        }
    }
    return different;
}

bool isBlank(std::span<const std::byte> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return !text.empty() && trimmed(text, " \t\r\n").empty();
}

Result<std::optional<std::string>> bytesOrError(Result<std::string> bytes) {
    if (!bytes) {
        return Error{bytes.error().what, {}, translated("change it with an editor")};
    }
    return std::optional(*std::move(bytes));
}

Result<std::optional<std::string>> edited(const std::optional<std::vector<std::byte>>& bytes,
                                          const SettingChanges& changes, const std::string& path) {
    if (!bytes || isBlank(*bytes)) {
        const SettingChanges added = differences({}, changes, PropertyListForm::xml);
        return added.empty() ? std::optional<std::string>() : bytesOrError(newDictionary(added));
    }
    const auto settings = parseDictionary(*bytes, path);
    if (!settings) {
        return settings.error();
    }
    const SettingChanges different = differences(*settings, changes, formOfPropertyList(*bytes));
    return different.empty() ? std::optional<std::string>()
                             : bytesOrError(changedDictionary(*bytes, *settings, different));
}

} // namespace

SettingsFile::SettingsFile(const std::string& preferencesFolder)
    : m_path(preferencesFolder + '/' + std::string(settingsFileName)) {}

Result<PropertyListDictionary> SettingsFile::read() const {
    const auto bytes = readListBytes(m_path);
    if (!bytes) {
        return bytes.error();
    }
    if (!*bytes) {
        return PropertyListDictionary();
    }
    auto settings = parseDictionary(**bytes, m_path);
    if (settings && formOfPropertyList(**bytes) == PropertyListForm::oldText) {
        convertTexts(*settings);
    }
    return settings;
}

std::string SettingsFile::placeOf(const std::string& key) const {
    const auto bytes = readListBytes(m_path);
    if (!bytes || !*bytes) {
        return m_path;
    }
    const auto positions = placesOfKeys(**bytes);
    const auto found = positions.find(key);
    return found == positions.end() ? m_path : m_path + ':' + found->second;
}

Result<void> SettingsFile::change(const SettingChanges& changes) const {
    return changePropertyListFile(
        m_path, [&](const auto& bytes) { return edited(bytes, changes, m_path); });
}

} // namespace quorvel::freedesktop
