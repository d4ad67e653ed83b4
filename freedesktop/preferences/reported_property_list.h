// Reads the property lists of a user who is to learn what is wrong with them.
#pragma once

#include <string>

#include "base/result.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// Empty if there is no file at the path. An error has all three parts; `where` is "PATH" or
// "PATH:LINE:COLUMN".
Result<platform::PropertyListDictionary> readDictionaryFile(const std::string& path);
Result<platform::PropertyListArray> readArrayFile(const std::string& path);

} // namespace quorvel::freedesktop
