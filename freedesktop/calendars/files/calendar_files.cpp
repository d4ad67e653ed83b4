// Walking folders, looking at files, and telling calendars from mere folders of files.
#include "freedesktop/calendars/files/calendar_files.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <future>
#include <mutex>
#include <span>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "freedesktop/io/file_descriptor.h"
#include "icalendar/model/ics_file_reader.h"
#include "icalendar/text/content_lines.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t mostFolders = 5000;
constexpr std::size_t mostFilesInAFolder = 250000;
constexpr std::size_t mostUnnamedCalendars = 24;
constexpr std::string_view calendarSuffix = ".ics";
constexpr std::uint64_t ofTheSource = 0; // the version of a problem that no file has

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

std::string reasonOf(int error) {
    return std::generic_category().message(error);
}

std::string readingProblem(int error) {
    if (error == noRoom) {
        return "it is left out: there are more events than can be kept";
    }
    return "it cannot be read: " + reasonOf(error);
}

bool endsLikeCalendar(std::string_view name) {
    return name.size() > calendarSuffix.size() &&
           icalendar::equalsIgnoringCase(name.substr(name.size() - calendarSuffix.size()), ".ICS");
}

bool isMetadataName(std::string_view name) {
    return name == "color" || name == "displayname";
}

std::string_view stemOf(std::string_view name) {
    return endsLikeCalendar(name) ? name.substr(0, name.size() - calendarSuffix.size()) : name;
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string_view lastPart(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

std::string canonicalPath(const std::string& path) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> real(realpath(path.c_str(), nullptr));
    return real ? real.get() : path;
}

std::string withoutLineBreaks(std::string text) {
    const auto isBlank = [](char c) { return c == '\n' || c == '\r' || c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.back())) {
        text.pop_back();
    }
    return text;
}

// One of them stands in the other, and is long enough for that to be no accident.
bool nameTellsUid(std::string_view stem, std::string_view uid) {
    constexpr std::size_t shortestPart = 8;
    if (stem == uid) {
        return true;
    }
    const bool isShorter = stem.size() < uid.size();
    const std::string_view part = isShorter ? stem : uid;
    const std::string_view whole = isShorter ? uid : stem;
    return part.size() >= shortestPart && whole.find(part) != std::string_view::npos;
}

void addFile(SignatureHash& signature, const CalendarFile& file) {
    signature.add(std::string_view(file.name));
    signature.add(file.seenError);
    signature.add(file.seen.device);
    signature.add(file.seen.inode);
    signature.add(file.seen.size);
    signature.add(file.seen.modified);
    signature.add(file.seen.changed);
}

void addProblems(const CalendarFile& file, const std::string& path,
                 std::vector<VersionedProblem>& problems) {
    if (file.error != 0) {
        problems.push_back({{path, 0, readingProblem(file.error)}, ofTheSource});
    } else if (file.loaded) {
        for (const icalendar::FileProblem& problem : file.loaded->ics.problems) {
            problems.push_back({{path, problem.line, problem.what}, file.loaded->version});
        }
    }
}

// Whether the same look will find the same again.
bool isSettledFile(const CalendarFile& file) {
    const bool isSame = file.wasRead && file.isSettled && file.version == file.seen;
    return isSame && file.seenError == 0 && (file.error == 0 || file.isErrorLasting());
}

void lookAtFiles(std::span<CalendarFile> files, int folder) {
    for (CalendarFile& file : files) {
        struct stat status {};
        file.seenError = fstatat(folder, file.name.c_str(), &status, 0) == 0 ? 0 : errno;
        file.seen = file.seenError == 0 ? versionOf(status) : FileVersion();
    }
}

// Names are sorted, as the files are; what was known of a file stays with its name.
void renew(std::vector<CalendarFile>& files, std::vector<std::string> names, int folder) {
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
    lookAtFiles(files, folder);
}

} // namespace

struct CalendarFiles::Folder {
    std::string path;  // for messages
    std::string place; // with all links followed
    std::string name;
    int error = 0;
    bool hasTooMany = false;
    std::vector<CalendarFile> files;                 // .ics files, sorted
    std::vector<CalendarFile> metadata;              // color, displayname
    std::vector<std::unique_ptr<Folder>> subFolders; // sorted

    bool isCalendar() const { return !files.empty() || !metadata.empty(); }
    bool looksLikeCalendar() const;
    std::optional<std::string> metadataNamed(std::string_view wanted) const;
    void addTo(SignatureHash& signature) const;
    void addTo(std::vector<VersionedProblem>& problems) const;
    void addTo(std::vector<UnreadFile>& unread);
    void addTo(std::vector<CalendarFile*>& read);
    bool isSettled() const;
};

struct CalendarFiles::Child {
    std::string name;
    bool mayBeLink = false;
};

// The files of one folder, to be looked at once all folders are known.
struct CalendarFiles::Listing {
    Folder* folder = nullptr;
    std::vector<std::string> calendars;
    std::vector<std::string> metadata;

    void lookAtFiles();
};

// Looks at the files of listings as they come, many by two threads, a folder at a time.
class CalendarFiles::Lookers {
public:
    Lookers() = default;
    ~Lookers() { complete(); }
    Lookers(const Lookers&) = delete;
    Lookers& operator=(const Lookers&) = delete;

    void add(Listing listing);
    void finish(); // once, when all were added

private:
    void work();
    void complete();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Listing> m_listings;
    std::size_t m_files = 0;
    bool m_isComplete = false;
    std::future<void> m_other;
};

struct CalendarFiles::Walk {
    std::set<std::pair<dev_t, ino_t>> visited; // against loops of links
    int depth = 0;
    Lookers lookers;
};

bool CalendarFiles::Folder::looksLikeCalendar() const {
    if (!metadata.empty()) {
        return true;
    }
    std::size_t oneEvent = 0;
    std::size_t named = 0;
    for (const CalendarFile& file : files) {
        if (file.loaded && file.loaded->ics.looksLikeOneEvent()) {
            const icalendar::IcsFile& ics = file.loaded->ics;
            ++oneEvent;
            named += nameTellsUid(stemOf(file.name), ics.slice(ics.events.front().uid)) ? 1 : 0;
        }
    }
    const std::size_t half = files.size() / 2;
    return named > half || (oneEvent > half && files.size() > mostUnnamedCalendars);
}

std::optional<std::string> CalendarFiles::Folder::metadataNamed(std::string_view wanted) const {
    for (const CalendarFile& file : metadata) {
        if (file.name == wanted && file.error == 0) {
            return icalendar::validUtf8(withoutLineBreaks(file.metadata));
        }
    }
    return std::nullopt;
}

void CalendarFiles::Folder::addTo(SignatureHash& signature) const {
    signature.add(std::string_view(path));
    signature.add(std::string_view(place));
    signature.add(error);
    signature.add(files.size());
    for (const CalendarFile& file : files) {
        addFile(signature, file);
    }
    signature.add(metadata.size());
    for (const CalendarFile& file : metadata) {
        addFile(signature, file);
    }
    signature.add(subFolders.size());
    for (const auto& folder : subFolders) {
        folder->addTo(signature);
    }
}

void CalendarFiles::Folder::addTo(std::vector<VersionedProblem>& problems) const {
    if (error != 0) {
        problems.push_back({{path, 0, readingProblem(error)}, ofTheSource});
    }
    if (hasTooMany) {
        problems.push_back({{path, 0,
                             "there are more files than can be read: only the first " +
                                 std::to_string(mostFilesInAFolder) + " are"},
                            ofTheSource});
    }
    for (const auto* list : {&files, &metadata}) {
        for (const CalendarFile& file : *list) {
            addProblems(file, path + "/" + file.name, problems);
        }
    }
    for (const auto& folder : subFolders) {
        folder->addTo(problems);
    }
}

void CalendarFiles::Folder::addTo(std::vector<UnreadFile>& unread) {
    const auto add = [&](std::vector<CalendarFile>& list, FileKind kind) {
        for (CalendarFile& file : list) {
            if (!file.isCurrent()) {
                unread.push_back({&file, kind, path + "/" + file.name, place + "/" + file.name});
            }
        }
    };
    add(files, FileKind::calendar);
    add(metadata, FileKind::metadata);
    for (const auto& folder : subFolders) {
        folder->addTo(unread);
    }
}

void CalendarFiles::Folder::addTo(std::vector<CalendarFile*>& read) {
    for (CalendarFile& file : files) {
        if (file.loaded) {
            read.push_back(&file);
        }
    }
    for (const auto& folder : subFolders) {
        folder->addTo(read);
    }
}

bool CalendarFiles::Folder::isSettled() const {
    return (error == 0 || error == EACCES) &&
           std::all_of(files.begin(), files.end(), isSettledFile) &&
           std::all_of(metadata.begin(), metadata.end(), isSettledFile) &&
           std::all_of(subFolders.begin(), subFolders.end(),
                       [](const auto& folder) { return folder->isSettled(); });
}

CalendarFiles::CalendarFiles(CalendarSource source)
    : m_source(std::move(source)) {
    if (m_source.text) {
        m_isReadable = true;
        m_place = "text:" + m_source.name;
    }
}

CalendarFiles::~CalendarFiles() = default;

void CalendarFiles::look(const std::function<bool(std::string_view)>& zoneIsKnown) {
    if (!m_source.text) {
        lookAtPath();
    } else if (!m_file) {
        m_file = std::make_unique<CalendarFile>();
        m_file->name = m_source.name;
        m_file->wasRead = m_file->isSettled = true;
        m_file->loaded = std::make_shared<icalendar::LoadedFile>(
            m_source.name, 0, icalendar::readIcsFile(*m_source.text, zoneIsKnown));
    }
}

void CalendarFiles::lookAtPath() {
    const bool isAFolder = isFolder(m_source.name);
    m_problem.clear();
    if (m_source.isOptional && !isAFolder) {
        forget();
        return;
    }
    if (const auto problem = problemWithSource(m_source)) {
        m_problem = *problem;
        forget();
        return;
    }
    m_place = canonicalPath(m_source.name);
    if (isAFolder) {
        m_file = nullptr;
        if (!m_folder) {
            m_folder = std::make_unique<Folder>();
        }
        m_folder->path = m_source.name;
        while (m_folder->path.size() > 1 && m_folder->path.back() == '/') {
            m_folder->path.pop_back();
        }
        m_folder->place = m_place;
        m_folder->name = lastPart(m_place);
        Walk walk;
        lookAt(*m_folder, walk);
        walk.lookers.finish();
        m_isReadable = m_folder->error == 0;
        return;
    }
    m_folder = nullptr;
    if (!m_file) {
        m_file = std::make_unique<CalendarFile>();
        m_file->name = m_source.name;
    }
    lookAtFiles({m_file.get(), 1}, AT_FDCWD);
    m_isReadable = m_file->seenError == 0;
}

void CalendarFiles::forget() {
    m_isReadable = false;
    m_file = nullptr;
    m_folder = nullptr;
}

void CalendarFiles::Listing::lookAtFiles() {
    const FileDescriptor descriptor(
        open(folder->path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    folder->hasTooMany = calendars.size() > mostFilesInAFolder;
    renew(folder->files, std::move(calendars), descriptor.get());
    renew(folder->metadata, std::move(metadata), descriptor.get());
}

void CalendarFiles::Lookers::add(Listing listing) {
    constexpr std::size_t fewestForTwo = 500;
    const std::lock_guard lock(m_mutex);
    m_files += listing.calendars.size();
    m_listings.push_back(std::move(listing));
    m_changed.notify_one();
    if (m_files >= fewestForTwo && !m_other.valid()) {
        // Deferred where the system has no thread to give: one looks at them all then.
        m_other = std::async(std::launch::async | std::launch::deferred, [this] { work(); });
    }
}

void CalendarFiles::Lookers::complete() {
    const std::lock_guard lock(m_mutex);
    m_isComplete = true;
    m_changed.notify_one();
}

void CalendarFiles::Lookers::finish() {
    complete();
    work();
    if (m_other.valid()) {
        m_other.get();
    }
}

void CalendarFiles::Lookers::work() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_isComplete || !m_listings.empty(); });
        if (m_listings.empty()) {
            return;
        }
        Listing listing = std::move(m_listings.front());
        m_listings.pop_front();
        lock.unlock();
        listing.lookAtFiles();
        lock.lock();
    }
}

void CalendarFiles::lookAt(Folder& folder, Walk& walk) {
    const FileDescriptor descriptor(
        open(folder.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    const int copy = descriptor.isOpen() ? dup(descriptor.get()) : -1;
    const std::unique_ptr<DIR, CloseDirectory> directory(copy >= 0 ? fdopendir(copy) : nullptr);
    folder.error = 0;
    if (!directory || fstat(descriptor.get(), &status) != 0) {
        folder.error = errno;
    }
    if (folder.error != 0 || walk.visited.size() >= mostFolders ||
        !walk.visited.insert({status.st_dev, status.st_ino}).second) {
        folder.files.clear();
        folder.metadata.clear();
        folder.subFolders.clear();
        return;
    }

    Listing listing{&folder, {}, {}};
    std::vector<Child> folders;
    while (const dirent* entry = readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name.front() == '.') {
            continue;
        }
        bool isFile = entry->d_type == DT_REG;
        bool isAFolder = entry->d_type == DT_DIR;
        if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) {
            const bool exists = fstatat(descriptor.get(), entry->d_name, &status, 0) == 0;
            isFile = exists && S_ISREG(status.st_mode);
            isAFolder = exists && S_ISDIR(status.st_mode);
        }
        if (isAFolder) {
            folders.push_back({std::string(name), entry->d_type != DT_DIR});
        } else if (isFile && endsLikeCalendar(name)) {
            listing.calendars.emplace_back(name);
        } else if (isFile && isMetadataName(name)) {
            listing.metadata.emplace_back(name);
        }
    }
    walk.lookers.add(std::move(listing));
    lookAtChildren(folder, std::move(folders), walk);
}

void CalendarFiles::lookAtChildren(Folder& folder, std::vector<Child> children, Walk& walk) {
    if (walk.depth >= deepestCalendarFolder) {
        children.clear();
    }
    std::sort(children.begin(), children.end(),
              [](const Child& a, const Child& b) { return a.name < b.name; });
    std::vector<std::unique_ptr<Folder>> before = std::move(folder.subFolders);
    folder.subFolders.clear();
    ++walk.depth;
    auto old = before.begin();
    for (const auto& [name, mayBeLink] : children) {
        while (old != before.end() && (*old)->name < name) {
            ++old;
        }
        const bool isKnown = old != before.end() && (*old)->name == name;
        folder.subFolders.push_back(isKnown ? std::move(*old++) : std::make_unique<Folder>());
        Folder& child = *folder.subFolders.back();
        child.name = name;
        child.path = folder.path + "/" + name;
        child.place = folder.place + "/" + name;
        if (mayBeLink) {
            child.place = canonicalPath(child.place);
        }
        lookAt(child, walk);
    }
    --walk.depth;
}

void CalendarFiles::addTo(SignatureHash& signature) const {
    signature.add(std::string_view(m_source.name));
    signature.add(m_source.isOptional);
    signature.add(std::string_view(m_problem));
    signature.add(std::string_view(m_place));
    signature.add(m_file ? 1 : 0);
    if (m_source.text) {
        signature.add(std::string_view(*m_source.text));
    } else if (m_file) {
        addFile(signature, *m_file);
    }
    signature.add(m_folder ? 1 : 0);
    if (m_folder) {
        m_folder->addTo(signature);
    }
}

std::vector<UnreadFile> CalendarFiles::unreadFiles() {
    std::vector<UnreadFile> unread;
    if (m_folder) {
        m_folder->addTo(unread);
    } else if (m_file && !m_source.text && !m_file->isCurrent()) {
        unread.push_back({m_file.get(), FileKind::calendar, m_file->name, m_place});
    }
    return unread;
}

std::vector<CalendarFile*> CalendarFiles::readFiles() {
    std::vector<CalendarFile*> read;
    if (m_folder) {
        m_folder->addTo(read);
    } else if (m_file && m_file->loaded) {
        read.push_back(m_file.get());
    }
    return read;
}

bool CalendarFiles::isSettled() const {
    if (m_source.text) {
        return true;
    }
    return m_folder ? m_folder->isSettled() : !m_file || isSettledFile(*m_file);
}

void CalendarFiles::addTo(std::vector<VersionedProblem>& problems) const {
    if (!m_problem.empty()) {
        problems.push_back({{m_source.name, 0, m_problem}, ofTheSource});
    } else if (m_folder) {
        m_folder->addTo(problems);
    } else if (m_file) {
        addProblems(*m_file, m_file->name, problems);
    }
}

void CalendarFiles::build() {
    for (auto& calendar : std::exchange(m_calendars, {})) {
        m_oldCalendars.emplace(calendar->calendar->calendarIdentifier, std::move(calendar));
    }
    if (m_file && m_file->loaded) {
        addCalendarOfFile(m_file->loaded, stemOf(lastPart(m_source.name)), m_place);
    } else if (m_folder) {
        buildFolder(*m_folder, true);
    }
    m_oldCalendars.clear();
}

void CalendarFiles::buildFolder(const Folder& folder, bool isRoot) {
    const bool isOne = isRoot ? folder.looksLikeCalendar() : folder.isCalendar();
    std::vector<std::shared_ptr<icalendar::LoadedFile>> files;
    for (const CalendarFile& file : folder.files) {
        if (file.loaded && isOne) {
            files.push_back(file.loaded);
        } else if (file.loaded) {
            addCalendarOfFile(file.loaded, stemOf(file.name), folder.place + "/" + file.name);
        }
    }
    if (isOne) {
        addCalendar({calendarIdentifier(folder.name, folder.place),
                     folder.metadataNamed("displayname"), folder.metadataNamed("color"),
                     folder.name},
                    std::move(files));
    }
    for (const auto& subFolder : folder.subFolders) {
        buildFolder(*subFolder, false);
    }
}

void CalendarFiles::addCalendarOfFile(const std::shared_ptr<icalendar::LoadedFile>& file,
                                      std::string_view name, std::string_view place) {
    addCalendar({calendarIdentifier(name, place), file->ics.calendarName, file->ics.calendarColour,
                 std::string(name)},
                {file});
}

// One that is what it was stays.
void CalendarFiles::addCalendar(const CalendarNames& names,
                                std::vector<std::shared_ptr<icalendar::LoadedFile>> files) {
    auto calendar = namedCalendar(names);
    const auto old = m_oldCalendars.find(calendar->calendarIdentifier);
    if (old != m_oldCalendars.end() && old->second->calendar->title == calendar->title &&
        old->second->calendar->CGColor == calendar->CGColor && old->second->files == files) {
        m_calendars.push_back(old->second);
    } else {
        m_calendars.push_back(makeLoadedCalendar(std::move(calendar), std::move(files)));
    }
}

} // namespace quorvel::freedesktop::calendars

namespace quorvel::freedesktop {

bool mayBelongToCalendar(std::string_view name) {
    return calendars::endsLikeCalendar(name) || calendars::isMetadataName(name);
}

} // namespace quorvel::freedesktop
