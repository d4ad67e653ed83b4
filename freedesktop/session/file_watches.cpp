#include "freedesktop/session/file_watches.h"

#include <algorithm>
#include <cerrno>
#include <deque>
#include <filesystem>
#include <system_error>
#include <utility>

#include <sys/inotify.h>

namespace quorvel::freedesktop {

namespace fs = std::filesystem;

namespace {

constexpr int mostSteps = 1000; // on one way, where links lead in a circle

constexpr std::uint32_t comes = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t comesOrGoes = comes | IN_DELETE | IN_MOVED_FROM;
constexpr std::uint32_t namesMask = comesOrGoes | IN_DELETE_SELF | IN_MOVE_SELF;
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

bool isGone(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

fs::file_type typeOf(const fs::path& path) {
    std::error_code ignored;
    return fs::symlink_status(path, ignored).type();
}

} // namespace

// One look at the disk. A watch is always added before what it watches is looked at, so that
// nothing happens unseen in between.
class FileWatches::Walk {
public:
    explicit Walk(FileWatches& owner)
        : m_owner(owner) {}

    void add(const WatchedPath& path);
    Watches takeWatches() { return std::move(m_watches); }

private:
    enum class Step {
        onTheWay, // something is other than it was a moment ago: look again
        arrived,
        lost // the folder has gone
    };
    // Name by name from a folder that is no link.
    Step follow(fs::path folder, Parts parts, const WatchedPath& path, int depth);
    Step awaitName(const fs::path& folder, const std::string& name, fs::file_type type);
    Step arrive(const fs::path& folder, const std::string& name, const WatchedPath& path,
                int depth);
    // An error where the kernel cannot, or the disk.
    std::error_code watchFolder(const fs::path& folder, const WatchedPath& path, int depth);
    std::error_code watchFile(const fs::path& file);
    std::error_code watchName(const fs::path& folder, const std::string& name, std::uint32_t mask);
    std::error_code watch(const fs::path& path, std::uint32_t mask, Watched*& watched);
    void lookAt(const fs::directory_entry& entry, Watched& folder, const WatchedPath& path,
                int depth);

    FileWatches& m_owner;
    Watches m_watches;
};

void FileWatches::Walk::add(const WatchedPath& path) {
    constexpr int mostAttempts = 4;
    Parts parts;
    putInFront(parts, path.path);
    Step step = Step::lost;
    for (int i = 0; step == Step::lost && i < mostAttempts; ++i) {
        step = follow("/", parts, path, path.depth);
    }
}

std::error_code FileWatches::Walk::watch(const fs::path& path, std::uint32_t mask,
                                         Watched*& watched) {
    if (m_watches.size() >= m_owner.m_mostWatches) {
        m_owner.sayOnce("there is too much to watch: some changes of files show when the widget "
                        "is presented again");
        return std::make_error_code(std::errc::no_space_on_device);
    }
    const int number = inotify_add_watch(m_owner.m_inotify.get(), path.c_str(),
                                         mask | IN_MASK_ADD | IN_EXCL_UNLINK | IN_DONT_FOLLOW);
    if (number >= 0) {
        watched = &m_watches[number];
        watched->path = path.string();
        return {};
    }
    const std::error_code error(errno, std::generic_category());
    if (error == std::errc::no_space_on_device) {
        m_owner.sayOnce("the system watches no more files (fs.inotify.max_user_watches): some "
                        "changes show when the widget is presented again");
    } else if (!isGone(error)) {
        m_owner.sayOnce("cannot watch " + path.string() + ": " + error.message());
    }
    return error;
}

std::error_code FileWatches::Walk::watchName(const fs::path& folder, const std::string& name,
                                             std::uint32_t mask) {
    Watched* watched = nullptr;
    const std::error_code error = watch(folder, mask | IN_ONLYDIR, watched);
    if (!error) {
        watched->names.insert(name);
    }
    return error;
}

std::error_code FileWatches::Walk::watchFile(const fs::path& file) {
    Watched* watched = nullptr;
    const std::error_code error = watch(file, fileMask, watched);
    if (!error) {
        watched->isFile = true;
    }
    return error;
}

std::error_code FileWatches::Walk::watchFolder(const fs::path& folder, const WatchedPath& path,
                                               int depth) {
    Watched* watched = nullptr;
    std::error_code error = watch(folder, folderMask | IN_ONLYDIR, watched);
    if (error) {
        return error;
    }
    const auto [known, isNew] = watched->depths.emplace(path.matters, depth);
    if (!isNew && known->second >= depth) {
        return {}; // links lead in a circle, or two of the paths to the same folder
    }
    known->second = depth;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        lookAt(*entry, *watched, path, depth);
    }
    return error;
}

void FileWatches::Walk::lookAt(const fs::directory_entry& entry, Watched& folder,
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
        watchFolder(entry.path(), path, depth - 1);
    }
}

FileWatches::Walk::Step FileWatches::Walk::awaitName(const fs::path& folder,
                                                     const std::string& name, fs::file_type type) {
    const std::error_code error = watchName(folder, name, namesMask);
    if (isGone(error)) {
        return Step::lost;
    }
    return typeOf(folder / name) == type ? Step::arrived : Step::onTheWay;
}

FileWatches::Walk::Step FileWatches::Walk::arrive(const fs::path& folder, const std::string& name,
                                                  const WatchedPath& path, int depth) {
    const fs::path last = folder / name;
    std::error_code error;
    if (typeOf(last) == fs::file_type::directory) {
        error = watchFolder(last, path, depth);
    } else if (isGone(watchName(folder, name, namesMask))) {
        return Step::lost;
    } else {
        error = watchFile(last);
    }
    if (error && !isGone(error)) {
        watchName(folder, name, folderMask); // for the day that it can be read
    }
    return isGone(error) ? Step::onTheWay : Step::arrived;
}

FileWatches::Walk::Step FileWatches::Walk::follow(fs::path folder, Parts parts,
                                                  const WatchedPath& path, int depth) {
    Step step = Step::onTheWay;
    for (int steps = 0; step == Step::onTheWay && steps < mostSteps; ++steps) {
        if (parts.empty()) { // the root, or a link to it or to the folder that the link is in
            watchFolder(folder, path, depth);
            return Step::arrived;
        }
        const std::string name = parts.front();
        const fs::path next = folder / name;
        const bool isLast = parts.size() == 1;
        const fs::file_type type = typeOf(next);
        if (name != ".." && type == fs::file_type::symlink) {
            std::error_code error;
            watchName(folder, name, namesMask);
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

// Also one that has just come, of which nothing is known yet.
bool FileWatches::Watched::isFollowedLink(std::string_view name, bool hasCome) const {
    return links.count(name) > 0 ||
           (hasCome && !depths.empty() && typeOf(fs::path(path) / name) == fs::file_type::symlink);
}

FileWatches::FileWatches(const FileDescriptor& inotify, platform::SystemLog& log,
                         std::size_t mostWatches)
    : m_inotify(inotify)
    , m_log(log)
    , m_mostWatches(mostWatches) {}

void FileWatches::renew(const std::vector<WatchedPath>& paths) {
    Walk walk(*this);
    for (const WatchedPath& path : paths) {
        walk.add(path);
    }
    const Watches before = std::exchange(m_watches, walk.takeWatches());
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
        m_watches.erase(found); // the kernel watches it no longer
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
    const bool hasComeOrGone = (mask & comesOrGoes) != 0;
    if (folder.names.count(name) > 0) {
        return isFolder || hasComeOrGone ? Effect::structure : Effect::change;
    }
    if (isHidden(name)) {
        return Effect::none;
    }
    if (isFolder) {
        return folder.mattersAsFolder() ? Effect::structure : Effect::none;
    }
    if (hasComeOrGone && folder.isFollowedLink(name, (mask & comes) != 0)) {
        return Effect::structure;
    }
    return folder.mattersAsFile(name) ? Effect::change : Effect::none;
}

void FileWatches::sayOnce(const std::string& problem) {
    if (m_said.insert(problem).second) {
        m_log.log(problem);
    }
}

} // namespace quorvel::freedesktop
