// Changes a property-list file of the user, so that nothing is lost whatever happens meanwhile.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"

namespace quorvel::freedesktop {

// Gets the bytes of the file, absent without a file, and returns the new ones; absent: nothing is
// to be changed. An error that lacks its place gets that of the file.
using PropertyListEdit = std::function<Result<std::optional<std::string>>(
    const std::optional<std::vector<std::byte>>& bytes)>;

// Reads, edits and replaces the file while no other program does; waits for the others up to half
// a minute. Makes the folder. After an error, and after the process or the machine has died, the
// file is the old or the new one. A file that is read-only stays.
Result<void> changePropertyListFile(const std::string& path, const PropertyListEdit& edit);

} // namespace quorvel::freedesktop
