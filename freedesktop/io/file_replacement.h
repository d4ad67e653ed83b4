// Writes a file as a whole, or not at all.
#pragma once

#include <string>
#include <string_view>

#include "base/result.h"

namespace quorvel::freedesktop {

enum class Durability {
    none,
    survivesPowerLoss, // waits until the disk has the file and its name
};

// Writes the contents to a new file in the same folder, with the permissions of the old file, and
// renames it over the old file. A symbolic link stays a link, also if its target is missing. A file
// that is not regular, such as a pipe, is written in place. The `what` of the error is the system's
// message.
Result<void> replaceFile(const std::string& path, std::string_view contents,
                         Durability durability = Durability::none);

// Removes the new files in a folder that replaceFile() could not rename because its process was
// ended. Call it only while no other replacement can be under way there.
void removeAbandonedFiles(const std::string& folder);

} // namespace quorvel::freedesktop
