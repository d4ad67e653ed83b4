// A file or folder to watch.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

struct WatchedPath {
    std::string path; // need not exist; may be relative to the working folder
    int depth = 0;    // number of levels of folders below it that are watched too
    // Whether a file in the folders matters, by its name. Null: all files. Hidden files never
    // matter.
    bool (*matters)(std::string_view name) = nullptr;
    bool operator==(const WatchedPath&) const = default;
};

} // namespace quorvel::freedesktop
