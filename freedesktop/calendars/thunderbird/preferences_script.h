// Reads prefs.js, the file of a profile's preferences.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace quorvel::freedesktop::thunderbird {

// The values by their names: a text without its quotation marks and escapes, anything else as it is
// written, such as "true". Only preferences whose name begins with the prefix. Lines that are no
// preference are passed over.
std::map<std::string, std::string> preferencesIn(std::string_view script, std::string_view prefix);

} // namespace quorvel::freedesktop::thunderbird
