// Reads the property lists of a user who is to learn what is wrong with them.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// An error has all three parts; `where` is "PATH" or "PATH:LINE:COLUMN".

// Absent if there is no file at the path.
Result<std::optional<std::vector<std::byte>>> readListBytes(const std::string& path);

Result<platform::PropertyListDictionary> parseDictionary(std::span<const std::byte> bytes,
                                                         const std::string& path);
Result<platform::PropertyListArray> parseArray(std::span<const std::byte> bytes,
                                               const std::string& path);

} // namespace quorvel::freedesktop
