// Maintains the inotify watches for a set of paths. Only for this folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/session/watched_path.h"
#include "platform/system_log.h"

struct inotify_event;

namespace quorvel::freedesktop {

inline constexpr std::size_t usualMostWatches = 8000;

// The kernel watches files, and folders including the names that change in them. A single file is
// also watched by its name in its folder, to notice a file that replaces it. A path that does not
// exist is watched by its first missing name.
class FileWatches {
public:
    // Both must outlive the object.
    FileWatches(const FileDescriptor& inotify, platform::SystemLog& log, std::size_t mostWatches);
    FileWatches(const FileWatches&) = delete;
    FileWatches& operator=(const FileWatches&) = delete;

    // Watches what these absolute paths lead to now.
    void renew(const std::vector<WatchedPath>& paths);

    enum class Effect {
        none,
        change,   // something watched has changed
        structure // likewise, and renew() is necessary
    };
    Effect effectOf(const inotify_event& event);

private:
    using Filter = bool (*)(std::string_view name);
    struct Watched {
        std::string path;
        bool isFile = false;                      // false: a folder
        std::set<std::string, std::less<>> names; // entries that matter whatever the filter
        std::set<std::string, std::less<>> links; // entries that are followed symbolic links
        // The number of levels of subfolders to watch, by the filter of the files that matter.
        std::map<Filter, int> depths;

        bool mattersAsFolder() const;
        bool mattersAsFile(std::string_view name) const;
        bool isFollowedLink(std::string_view name, bool isNew) const;
    };
    using Watches = std::map<int, Watched>; // by the kernel's number of the watch
    class Scan;

    Effect effectOnItself(const Watched& watched, std::uint32_t mask) const;
    Effect effectInFolder(const Watched& folder, std::string_view name, std::uint32_t mask) const;

    void logOnce(const std::string& problem);

    const FileDescriptor& m_inotify;
    platform::SystemLog& m_log;
    std::size_t m_mostWatches;
    Watches m_watches;
    std::set<std::string> m_logged;
};

} // namespace quorvel::freedesktop
