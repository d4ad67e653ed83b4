// The old text format of property lists, and of strings files: { key = value; list = (a, b); }
#pragma once

#include <string_view>

#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {

// `text` is UTF-8. Every pair ends with ';', "key;" is short for "key = key;", a strings file needs
// no braces. All values are texts, data (<0fbd77>), arrays and dictionaries.
PropertyListReading readOldPropertyList(std::string_view text);

} // namespace quorvel::freedesktop
