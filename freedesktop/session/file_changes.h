// Tells when files or folders change, without looking at them in between.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/descriptor_events.h"
#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/session/file_watches.h"
#include "freedesktop/session/watched_path.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

// A file is seen to change when it is written in place, replaced, renamed, removed or appears, and
// when its permissions change; a symbolic link is followed, and seen to point elsewhere. A path
// that does not exist is seen to come up. Calls come from the default main context of the thread
// that makes this, ten a second at most.
//
// What the system does not watch (too many folders, no permission) is said in the log, once. Other
// machines' changes to a network file system are not seen.
class FileChanges {
public:
    // The log outlives this. The call does not end it.
    FileChanges(platform::SystemLog& log, std::function<void()> changed,
                std::size_t mostWatches = usualMostWatches);
    FileChanges(const FileChanges&) = delete;
    FileChanges& operator=(const FileChanges&) = delete;

    // Instead of what was watched before. What changes from here on is told.
    void watch(std::vector<WatchedPath> paths);

private:
    void read();

    std::function<void()> m_changed;
    std::vector<WatchedPath> m_paths;
    FileDescriptor m_inotify;
    FileWatches m_watches;
    DescriptorEvents m_events;
    DelayedCall m_listenAgain;
};

} // namespace quorvel::freedesktop
