#include "freedesktop/session/file_changes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace quorvel::freedesktop {

namespace {

// A program that writes all the time must not keep the thread busy.
constexpr double secondsBetweenReads = 0.1;
constexpr int mostBuffersAtOnce = 8;

using Buffer = std::array<char, 65536>;

template <class Use>
void forEachEvent(const Buffer& buffer, std::size_t size, Use use) {
    constexpr std::size_t longestName = 256;
    alignas(inotify_event) std::array<char, sizeof(inotify_event) + longestName> event{};
    for (std::size_t at = 0; at + sizeof(inotify_event) <= size;) {
        inotify_event head{};
        std::memcpy(&head, buffer.data() + at, sizeof head);
        const std::size_t length = sizeof head + head.len;
        std::memcpy(event.data(), buffer.data() + at, std::min(length, event.size()));
        use(*reinterpret_cast<const inotify_event*>(event.data()));
        at += length;
    }
}

} // namespace

FileChanges::FileChanges(platform::SystemLog& log, std::function<void()> onChange,
                         std::size_t mostWatches)
    : m_onChange(std::move(onChange))
    , m_inotify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , m_watches(m_inotify, log, mostWatches)
    , m_events(m_inotify, [this] { read(); })
    , m_listenAgain([this] { m_events.listen(); }) {
    if (!m_inotify.isOpen()) {
        log.log("the system cannot watch files (" + std::generic_category().message(errno) +
                "): their changes show when the widget is presented again");
    }
    m_events.listen();
}

void FileChanges::watch(std::vector<WatchedPath> paths) {
    for (WatchedPath& path : paths) {
        std::error_code ignored;
        path.path = std::filesystem::absolute(path.path, ignored).string();
    }
    std::erase_if(paths, [](const WatchedPath& path) { return path.path.empty(); });
    if (m_inotify.isOpen() && paths != m_paths) {
        m_paths = std::move(paths);
        m_watches.renew(m_paths);
    }
}

void FileChanges::read() {
    using Effect = FileWatches::Effect;
    Effect effect = Effect::none;
    Buffer buffer;
    for (int round = 0; round < mostBuffersAtOnce; ++round) {
        const ssize_t size = ::read(m_inotify.get(), buffer.data(), buffer.size());
        if (size <= 0) {
            break;
        }
        forEachEvent(buffer, static_cast<std::size_t>(size), [&](const inotify_event& event) {
            effect = std::max(effect, m_watches.effectOf(event));
        });
    }
    m_events.pause();
    m_listenAgain.start(secondsBetweenReads);
    if (effect == Effect::structure) {
        m_watches.renew(m_paths);
    }
    if (effect != Effect::none) {
        m_onChange();
    }
}

} // namespace quorvel::freedesktop
