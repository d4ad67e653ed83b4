// Which of the kernel's watches stand for which paths. For this folder's own sources.
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

// The kernel watches folders, telling the names of what changes in them, and files. A file of its
// own is also watched by its name in its folder, so that one that takes its place is seen; a path
// that does not exist by the name that is missing first.
class FileWatches {
public:
    // Both outlive this.
    FileWatches(const FileDescriptor& inotify, platform::SystemLog& log, std::size_t mostWatches);
    FileWatches(const FileWatches&) = delete;
    FileWatches& operator=(const FileWatches&) = delete;

    // Looks at the disk, and watches what these paths, absolute ones, are now.
    void renew(const std::vector<WatchedPath>& paths);

    enum class Effect {
        none,
        change,   // of what is watched
        structure // ... and other folders are to be watched now
    };
    Effect effectOf(const inotify_event& event);

private:
    using Filter = bool (*)(std::string_view name);
    struct Watched {
        std::string path;
        bool isFile = false;                      // else a folder
        std::set<std::string, std::less<>> names; // that matter in any case
        std::set<std::string, std::less<>> links; // what is a link, and is followed
        // Of what passes which filter: how many levels of folders in this one belong to it.
        std::map<Filter, int> depths;

        bool mattersAsFolder() const;
        bool mattersAsFile(std::string_view name) const;
        bool isFollowedLink(std::string_view name, bool comes) const;
    };
    using Watches = std::map<int, Watched>; // by the number that the kernel gave
    class Walk;

    Effect effectOnItself(const Watched& watched, std::uint32_t mask) const;
    Effect effectInFolder(const Watched& folder, std::string_view name, std::uint32_t mask) const;

    void sayOnce(const std::string& problem);

    const FileDescriptor& m_inotify;
    platform::SystemLog& m_log;
    std::size_t m_mostWatches;
    Watches m_watches;
    std::set<std::string> m_said;
};

} // namespace quorvel::freedesktop
