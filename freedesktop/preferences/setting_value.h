// The values of settings: from and to the text that a user types, and what is wrong with them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/result.h"
#include "freedesktop/preferences/setting_descriptions.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// A boolean is true, yes, on, false, no or off; a colour is a code or a name; a choice may be
// written as its value or its label. Upper and lower case are the same except in free texts. The
// error names the key and the possible values.
Result<platform::PropertyListValue> parseSettingValue(const SettingDescription& setting,
                                                      std::string_view text);

// The stored value as text: "true", "14", "300.5", of a colour its code. An array and other values
// that no setting has become a few words such as "an array".
std::string settingText(const platform::PropertyListValue& value);

// The label of a choice, or the name of a colour. Absent: the value is none of the choices.
std::optional<std::string_view> settingLabel(const SettingDescription& setting,
                                             const platform::PropertyListValue& value);

// A value of the wrong kind, beyond the limits, or none of the choices; the error is like that of
// parseSettingValue(). Absent: the value is right.
std::optional<Error> checkSettingValue(const SettingDescription& setting,
                                       const platform::PropertyListValue& value);

// The possible values, such as "give a whole number from 1 to 200".
std::string settingAdvice(const SettingDescription& setting);

} // namespace quorvel::freedesktop
