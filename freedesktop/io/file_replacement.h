// Writes a file as a whole, or not at all.
#pragma once

#include <string>
#include <string_view>

#include "base/result.h"

namespace quorvel::freedesktop {

// Writes the contents to a new file in the same folder, with the permissions of the old file, and
// renames it over the old file. A symbolic link stays a link. A file that is not regular, such as a
// pipe, is written in place. The `what` of the error is the system's message.
Result<void> replaceFile(const std::string& path, std::string_view contents);

} // namespace quorvel::freedesktop
