// Writing a file as a whole, or not at all.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Writes the contents to a new file beside the old one and renames it over the old one, with the
// old one's permissions; a symbolic link stays one. What is not a regular file, such as a pipe, is
// written to in place. Returns the system's text of the error; absent: none.
std::optional<std::string> replaceFile(const std::string& path, std::string_view contents);

} // namespace quorvel::freedesktop
