// Parses property lists in the binary, the XML and the old text format.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "base/result.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// The `what` of an error is a few words about the list, such as "the XML breaks off"; `where` is
// "LINE:COLUMN" of a text, and else empty; `toDo` is empty.

// Time and memory are bounded for all input. White space alone is an empty dictionary. A reference
// of a keyed archive becomes a dictionary with "CF$UID". Invalid characters in a text, and a NUL in
// a text of a binary list, become U+FFFD.
Result<platform::PropertyListValue> parsePropertyList(std::span<const std::byte> bytes);

// Absent if there is no file at the path. Reads only regular files.
Result<std::optional<platform::PropertyListValue>> readPropertyListFile(const std::string& path);

} // namespace quorvel::freedesktop
