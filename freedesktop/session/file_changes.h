// Calls a function when files or folders change. Uses inotify, so nothing is polled.
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

// Notices that a file is written in place, replaced, renamed, removed or created, and that its
// permissions change. Follows symbolic links and notices that they point elsewhere. A path need not
// exist yet. Calls on the default main context of the thread that constructs it, at most ten times
// per second.
//
// Logs once what the system cannot watch (too many folders, no permission). Does not notice changes
// that other machines make on a network file system.
class FileChanges {
public:
    // The log must outlive the object. The call must not destroy it.
    FileChanges(platform::SystemLog& log, std::function<void()> onChange,
                std::size_t mostWatches = usualMostWatches);
    FileChanges(const FileChanges&) = delete;
    FileChanges& operator=(const FileChanges&) = delete;

    // Replaces the watched paths. Every later change is reported.
    void watch(std::vector<WatchedPath> paths);

private:
    void read();

    std::function<void()> m_onChange;
    std::vector<WatchedPath> m_paths;
    FileDescriptor m_inotify;
    FileWatches m_watches;
    DescriptorEvents m_events;
    DelayedCall m_listenAgain;
};

} // namespace quorvel::freedesktop
