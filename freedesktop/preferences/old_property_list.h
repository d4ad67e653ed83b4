// Parses the old text format of property lists and strings files: { key = value; list = (a, b); }
#pragma once

#include <optional>
#include <string_view>

#include "base/result.h"
#include "freedesktop/preferences/list_places.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// `text` is UTF-8. Every pair ends with ';', "key;" is short for "key = key;", and a strings file
// needs no braces. Values are texts, data (<0fbd77>), arrays and dictionaries.
Result<platform::PropertyListValue> parseOldPropertyList(std::string_view text);

// Where the pairs of the list stand. Absent: the list is no dictionary.
std::optional<ListPlaces> placesInOldPropertyList(std::string_view text);

} // namespace quorvel::freedesktop
