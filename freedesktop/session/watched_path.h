// A file or folder whose changes matter to somebody.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

struct WatchedPath {
    std::string path; // need not exist; relative: to the working folder
    int depth = 0;    // how many levels of folders below it belong to it
    // Which files of its folders matter, by name; null: all of them. Hidden ones never do.
    bool (*matters)(std::string_view name) = nullptr;
    bool operator==(const WatchedPath&) const = default;
};

} // namespace quorvel::freedesktop
