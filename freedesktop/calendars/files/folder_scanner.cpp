// One thread walks the folders; where there are many files, two threads find out their versions.
#include "freedesktop/calendars/files/folder_scanner.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <set>
#include <span>
#include <string_view>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/helper_thread.h"
#include "freedesktop/calendars/files/calendar_file_names.h"
#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t mostFolders = 5000;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

// What was found in one folder.
struct Listing {
    CalendarFolder* folder = nullptr;
    std::vector<std::string> calendars; // names of files
    std::vector<std::string> metadata;
};

struct SubFolderName {
    std::string name;
    bool mayBeLink = false;
};

void findVersions(std::span<CalendarFile> files, int folder) {
    for (CalendarFile& file : files) {
        struct stat status {};
        if (fstatat(folder, file.name.c_str(), &status, 0) == 0) {
            file.listed = versionOf(status);
        } else {
            file.listed = FileError::ofSystem(errno);
        }
    }
}

// Replaces the files by those with the names. What was read of a file stays with its name.
void updateFiles(std::vector<CalendarFile>& files, std::vector<std::string> names, int folder) {
    std::sort(names.begin(), names.end());
    names.resize(std::min(names.size(), mostFilesInAFolder));
    std::vector<CalendarFile> before = std::move(files);
    files.clear();
    files.reserve(names.size());
    auto old = before.begin();
    for (std::string& name : names) {
        while (old != before.end() && old->name < name) {
            ++old;
        }
        if (old != before.end() && old->name == name) {
            files.push_back(std::move(*old++));
        } else {
            files.emplace_back();
            files.back().name = std::move(name);
        }
    }
    findVersions(files, folder);
}

void updateFolder(Listing listing) {
    CalendarFolder& folder = *listing.folder;
    const FileDescriptor descriptor(open(folder.path.c_str(), folderFlags));
    folder.hasTooMany = listing.calendars.size() > mostFilesInAFolder;
    updateFiles(folder.files, std::move(listing.calendars), descriptor.get());
    updateFiles(folder.metadata, std::move(listing.metadata), descriptor.get());
}

// Updates the files of one listing after the other. For the thread that adds listings and the
// helper thread: the mutex guards the queue, and a listing belongs to the thread that took it.
class ListingQueue {
public:
    ListingQueue() = default;
    ~ListingQueue() { close(); } // before the helper thread is joined
    ListingQueue(const ListingQueue&) = delete;
    ListingQueue& operator=(const ListingQueue&) = delete;

    void add(Listing listing) {
        constexpr std::size_t fewestForTwoThreads =
            500; // files: fewer take less than a thread costs
        const std::lock_guard lock(m_mutex);
        m_files += listing.calendars.size();
        m_listings.push_back(std::move(listing));
        m_changed.notify_one();
        if (m_files >= fewestForTwoThreads && !m_helper.isStarted()) {
            m_helper.start([this] { updateFolders(); });
        }
    }

    // Once, after the last listing. Returns when all files are updated.
    void finish() {
        close();
        updateFolders();
        m_helper.join();
    }

private:
    void close() {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        m_changed.notify_one();
    }

    void updateFolders() {
        std::unique_lock lock(m_mutex);
        while (true) {
            m_changed.wait(lock, [this] { return m_isClosed || !m_listings.empty(); });
            if (m_listings.empty()) {
                return;
            }
            Listing listing = std::move(m_listings.front());
            m_listings.pop_front();
            lock.unlock();
            updateFolder(std::move(listing));
            lock.lock();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Listing> m_listings;
    std::size_t m_files = 0; // of all listings
    bool m_isClosed = false;
    HelperThread m_helper;
};

class FolderWalk {
public:
    void enter(CalendarFolder& folder);
    void finish() { m_queue.finish(); }

private:
    bool isEnteredAgain(const struct stat& status) {
        return m_entered.size() >= mostFolders ||
               !m_entered.insert({status.st_dev, status.st_ino}).second;
    }
    void enterSubFolders(CalendarFolder& folder, std::vector<SubFolderName> names);

    std::set<std::pair<dev_t, ino_t>> m_entered; // against loops of links
    int m_depth = 0;
    ListingQueue m_queue;
};

void clear(CalendarFolder& folder) {
    folder.files.clear();
    folder.metadata.clear();
    folder.subFolders.clear();
}

// The kind of the entry, by way of links: S_IFREG, S_IFDIR, or 0 for all others.
mode_t kindOf(const dirent& entry, int folder) {
    if (entry.d_type == DT_REG) {
        return S_IFREG;
    }
    if (entry.d_type == DT_DIR) {
        return S_IFDIR;
    }
    struct stat status {};
    const bool mayBeEither = entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
    if (!mayBeEither || fstatat(folder, entry.d_name, &status, 0) != 0) {
        return 0;
    }
    return status.st_mode & S_IFMT;
}

void FolderWalk::enter(CalendarFolder& folder) {
    const FileDescriptor descriptor(open(folder.path.c_str(), folderFlags));
    struct stat status {};
    const int copy = descriptor.isOpen() ? dup(descriptor.get()) : -1;
    const std::unique_ptr<DIR, CloseDirectory> directory(copy >= 0 ? fdopendir(copy) : nullptr);
    folder.error.reset();
    if (!directory || fstat(descriptor.get(), &status) != 0) {
        folder.error = FileError::ofSystem(errno);
    }
    if (folder.error || isEnteredAgain(status)) {
        clear(folder);
        return;
    }
    Listing listing{&folder, {}, {}};
    std::vector<SubFolderName> subFolders;
    while (const dirent* const entry = readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name.front() == '.') {
            continue;
        }
        const mode_t kind = kindOf(*entry, descriptor.get());
        if (kind == S_IFDIR) {
            subFolders.push_back({std::string(name), entry->d_type != DT_DIR});
        } else if (kind == S_IFREG && hasCalendarSuffix(name)) {
            listing.calendars.emplace_back(name);
        } else if (kind == S_IFREG && isMetadataName(name)) {
            listing.metadata.emplace_back(name);
        }
    }
    m_queue.add(std::move(listing));
    enterSubFolders(folder, std::move(subFolders));
}

void FolderWalk::enterSubFolders(CalendarFolder& folder, std::vector<SubFolderName> names) {
    if (m_depth >= deepestCalendarFolder) {
        names.clear();
    }
    std::sort(names.begin(), names.end(),
              [](const SubFolderName& a, const SubFolderName& b) { return a.name < b.name; });
    std::vector<std::unique_ptr<CalendarFolder>> before = std::move(folder.subFolders);
    folder.subFolders.clear();
    ++m_depth;
    auto old = before.begin();
    for (const auto& [name, mayBeLink] : names) {
        while (old != before.end() && (*old)->name < name) {
            ++old;
        }
        const bool isKnown = old != before.end() && (*old)->name == name;
        folder.subFolders.push_back(isKnown ? std::move(*old++)
                                            : std::make_unique<CalendarFolder>());
        CalendarFolder& subFolder = *folder.subFolders.back();
        subFolder.name = name;
        subFolder.path = folder.path + "/" + name;
        subFolder.realPath = folder.realPath + "/" + name;
        if (mayBeLink) {
            subFolder.realPath = realPath(subFolder.realPath);
        }
        enter(subFolder);
    }
    --m_depth;
}

} // namespace

void scanFolder(CalendarFolder& folder) {
    FolderWalk walk;
    walk.enter(folder);
    walk.finish();
}

void scanFile(CalendarFile& file) {
    findVersions({&file, 1}, AT_FDCWD);
}

std::string realPath(const std::string& path) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> real(realpath(path.c_str(), nullptr));
    return real ? real.get() : path;
}

} // namespace quorvel::freedesktop::calendars
