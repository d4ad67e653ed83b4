#include "freedesktop/session/file_watches.h"

#include <algorithm>
#include <cerrno>
#include <deque>
#include <filesystem>
#include <system_error>
#include <utility>

#include <sys/inotify.h>

#include "base/result.h"

namespace quorvel::freedesktop {

namespace fs = std::filesystem;

namespace {

constexpr int mostSteps = 1000; // along one path, because links may lead in a circle

constexpr std::uint32_t appears = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t appearsOrDisappears = appears | IN_DELETE | IN_MOVED_FROM;
constexpr std::uint32_t namesMask = appearsOrDisappears | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t fileMask =
    IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t folderMask = namesMask | fileMask;

using Parts = std::deque<std::string>; // of a path

void putInFront(Parts& parts, const fs::path& path) {
    Parts added;
    for (const fs::path& part : path.relative_path()) {
        if (!part.empty() && part != ".") {
            added.push_back(part.string());
        }
    }
    parts.insert(parts.begin(), added.begin(), added.end());
}

bool isHidden(std::string_view name) {
    return name.substr(0, 1) == ".";
}

bool passes(bool (*filter)(std::string_view), std::string_view name) {
    return filter == nullptr || filter(name);
}

bool isMissing(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

using Outcome = Result<void, std::error_code>;

bool isMissing(const Outcome& outcome) {
    return !outcome && isMissing(outcome.error());
}

fs::file_type typeOf(const fs::path& path) {
    std::error_code ignored;
    return fs::symlink_status(path, ignored).type();
}

} // namespace

// Scans the disk once. It always adds the watch before it reads what is watched, so that no change
// in between is lost.
class FileWatches::Scan {
public:
    explicit Scan(FileWatches& owner)
        : m_owner(owner) {}

    void add(const WatchedPath& path);
    Watches takeWatches() { return std::move(m_watches); }

private:
    enum class Step {
        onTheWay, // the path has changed during the scan: look at it again
        arrived,
        lost // the folder was removed
    };
    // Name by name, from a folder that is not a link.
    Step follow(fs::path folder, Parts parts, const WatchedPath& path, int depth);
    Step awaitName(const fs::path& folder, const std::string& name, fs::file_type type);
    Step arrive(const fs::path& folder, const std::string& name, const WatchedPath& path,
                int depth);
    Outcome watchFolder(const fs::path& folder, const WatchedPath& path, int depth);
    Outcome watchFile(const fs::path& file);
    Outcome watchName(const fs::path& folder, const std::string& name, std::uint32_t mask);
    Result<Watched*, std::error_code> watch(const fs::path& path, std::uint32_t mask); // not null
    void watchEntry(const fs::directory_entry& entry, Watched& folder, const WatchedPath& path,
                    int depth);

    FileWatches& m_owner;
    Watches m_watches;
};

void FileWatches::Scan::add(const WatchedPath& path) {
    constexpr int mostAttempts = 4;
    Parts parts;
    putInFront(parts, path.path);
    Step step = Step::lost;
    for (int i = 0; step == Step::lost && i < mostAttempts; ++i) {
        step = follow("/", parts, path, path.depth);
    }
}

Result<FileWatches::Watched*, std::error_code> FileWatches::Scan::watch(const fs::path& path,
                                                                        std::uint32_t mask) {
    if (m_watches.size() >= m_owner.m_mostWatches) {
        m_owner.logOnce("there is too much to watch: some changes of files show when the widget "
                        "is presented again");
        return std::make_error_code(std::errc::no_space_on_device);
    }
    const int number = inotify_add_watch(m_owner.m_inotify.get(), path.c_str(),
                                         mask | IN_MASK_ADD | IN_EXCL_UNLINK | IN_DONT_FOLLOW);
    if (number >= 0) {
        Watched* const watched = &m_watches[number];
        watched->path = path.string();
        return watched;
    }
    const std::error_code error(errno, std::generic_category());
    if (error == std::errc::no_space_on_device) {
        m_owner.logOnce("the system cannot watch more files (fs.inotify.max_user_watches): some "
                        "changes show when the widget is presented again");
    } else if (!isMissing(error)) {
        m_owner.logOnce("cannot watch " + path.string() + ": " + error.message());
    }
    return error;
}

Outcome FileWatches::Scan::watchName(const fs::path& folder, const std::string& name,
                                     std::uint32_t mask) {
    const auto watched = watch(folder, mask | IN_ONLYDIR);
    if (!watched) {
        return watched.error();
    }
    watched.value()->names.insert(name);
    return {};
}

Outcome FileWatches::Scan::watchFile(const fs::path& file) {
    const auto watched = watch(file, fileMask);
    if (!watched) {
        return watched.error();
    }
    watched.value()->isFile = true;
    return {};
}

Outcome FileWatches::Scan::watchFolder(const fs::path& folder, const WatchedPath& path, int depth) {
    const auto watched = watch(folder, folderMask | IN_ONLYDIR);
    if (!watched) {
        return watched.error();
    }
    const auto [known, isNew] = watched.value()->depths.emplace(path.matters, depth);
    if (!isNew && known->second >= depth) {
        return {}; // links lead in a circle, or two of the paths lead to the same folder
    }
    known->second = depth;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        watchEntry(*entry, *watched.value(), path, depth);
    }
    return error ? error : Outcome();
}

void FileWatches::Scan::watchEntry(const fs::directory_entry& entry, Watched& folder,
                                   const WatchedPath& path, int depth) {
    const std::string name = entry.path().filename().string();
    std::error_code ignored;
    if (isHidden(name)) {
        return;
    }
    if (entry.is_symlink(ignored)) {
        if (passes(path.matters, name) || (depth > 0 && !entry.is_regular_file(ignored))) {
            folder.links.insert(name);
            follow(folder.path, {name}, path, depth - 1);
        }
    } else if (depth > 0 && entry.is_directory(ignored)) {
        static_cast<void>(watchFolder(entry.path(), path, depth - 1));
    }
}

FileWatches::Scan::Step FileWatches::Scan::awaitName(const fs::path& folder,
                                                     const std::string& name, fs::file_type type) {
    if (isMissing(watchName(folder, name, namesMask))) {
        return Step::lost;
    }
    return typeOf(folder / name) == type ? Step::arrived : Step::onTheWay;
}

FileWatches::Scan::Step FileWatches::Scan::arrive(const fs::path& folder, const std::string& name,
                                                  const WatchedPath& path, int depth) {
    const fs::path last = folder / name;
    const bool isFolder = typeOf(last) == fs::file_type::directory;
    if (!isFolder && isMissing(watchName(folder, name, namesMask))) {
        return Step::lost;
    }
    const Outcome watched = isFolder ? watchFolder(last, path, depth) : watchFile(last);
    if (isMissing(watched)) {
        return Step::onTheWay;
    }
    if (!watched) { // a change of the permissions is noticed by the name
        static_cast<void>(watchName(folder, name, folderMask));
    }
    return Step::arrived;
}

FileWatches::Scan::Step FileWatches::Scan::follow(fs::path folder, Parts parts,
                                                  const WatchedPath& path, int depth) {
    Step step = Step::onTheWay;
    for (int steps = 0; step == Step::onTheWay && steps < mostSteps; ++steps) {
        if (parts.empty()) { // the root, or a link to it or to the folder that contains the link
            static_cast<void>(watchFolder(folder, path, depth));
            return Step::arrived;
        }
        const std::string name = parts.front();
        const fs::path next = folder / name;
        const bool isLast = parts.size() == 1;
        const fs::file_type type = typeOf(next);
        if (name != ".." && type == fs::file_type::symlink) {
            std::error_code error;
            static_cast<void>(watchName(folder, name, namesMask));
            const fs::path target = fs::read_symlink(next, error);
            if (!error) {
                folder = target.is_absolute() ? "/" : folder;
                parts.pop_front();
                putInFront(parts, target);
            }
        } else if (!isLast && (name == ".." || type == fs::file_type::directory)) {
            folder = name == ".." ? folder.parent_path() : next;
            parts.pop_front();
        } else if (!isLast || type == fs::file_type::not_found) {
            step = awaitName(folder, name, type);
        } else {
            step = arrive(folder, name, path, depth);
        }
    }
    return step;
}

bool FileWatches::Watched::mattersAsFolder() const {
    return std::any_of(depths.begin(), depths.end(),
                       [](const auto& depth) { return depth.second > 0; });
}

bool FileWatches::Watched::mattersAsFile(std::string_view name) const {
    return std::any_of(depths.begin(), depths.end(),
                       [name](const auto& depth) { return passes(depth.first, name); });
}

// A new link is not known yet.
bool FileWatches::Watched::isFollowedLink(std::string_view name, bool isNew) const {
    return links.count(name) > 0 ||
           (isNew && !depths.empty() && typeOf(fs::path(path) / name) == fs::file_type::symlink);
}

FileWatches::FileWatches(const FileDescriptor& inotify, platform::SystemLog& log,
                         std::size_t mostWatches)
    : m_inotify(inotify)
    , m_log(log)
    , m_mostWatches(mostWatches) {}

void FileWatches::renew(const std::vector<WatchedPath>& paths) {
    Scan scan(*this);
    for (const WatchedPath& path : paths) {
        scan.add(path);
    }
    const Watches before = std::exchange(m_watches, scan.takeWatches());
    for (const auto& [number, watched] : before) {
        if (m_watches.count(number) == 0) {
            inotify_rm_watch(m_inotify.get(), number);
        }
    }
}

FileWatches::Effect FileWatches::effectOf(const inotify_event& event) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        return Effect::structure;
    }
    const auto found = m_watches.find(event.wd);
    if (found == m_watches.end()) {
        return Effect::none;
    }
    if ((event.mask & IN_IGNORED) != 0) {
        m_watches.erase(found); // the kernel has removed the watch
        return Effect::structure;
    }
    return event.len == 0 ? effectOnItself(found->second, event.mask)
                          : effectInFolder(found->second, event.name, event.mask);
}

FileWatches::Effect FileWatches::effectOnItself(const Watched& watched, std::uint32_t mask) const {
    if ((mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) != 0) {
        return Effect::structure;
    }
    if (watched.isFile) {
        return Effect::change;
    }
    return watched.depths.empty() ? Effect::none : Effect::structure;
}

FileWatches::Effect FileWatches::effectInFolder(const Watched& folder, std::string_view name,
                                                std::uint32_t mask) const {
    const bool isFolder = (mask & IN_ISDIR) != 0;
    const bool isEntryChange = (mask & appearsOrDisappears) != 0;
    if (folder.names.count(name) > 0) {
        return isFolder || isEntryChange ? Effect::structure : Effect::change;
    }
    if (isHidden(name)) {
        return Effect::none;
    }
    if (isFolder) {
        return folder.mattersAsFolder() ? Effect::structure : Effect::none;
    }
    if (isEntryChange && folder.isFollowedLink(name, (mask & appears) != 0)) {
        return Effect::structure;
    }
    return folder.mattersAsFile(name) ? Effect::change : Effect::none;
}

void FileWatches::logOnce(const std::string& problem) {
    if (m_logged.insert(problem).second) {
        m_log.log(problem);
    }
}

} // namespace quorvel::freedesktop
