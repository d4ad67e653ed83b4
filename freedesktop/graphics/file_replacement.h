// A file that is written whole or not at all.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Written beside the file that it replaces, whose permissions it keeps; a link stays a link. What
// is no regular file, such as a pipe, is written to as it is. Returns what went wrong, as the
// system says it; absent: nothing.
std::optional<std::string> replaceFile(const std::string& path, std::string_view contents);

} // namespace quorvel::freedesktop
