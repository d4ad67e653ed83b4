// Walking folders and reading files. Only regular files are opened, each is read with one buffer,
// and one that is what it was is not read again.
#include "freedesktop/calendar/calendar_files.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <future>
#include <span>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/calendar/calendar_colours.h"
#include "freedesktop/calendar/content_lines.h"
#include "freedesktop/calendar/stable_hash.h"

namespace quorvel::freedesktop::ics {
namespace {

constexpr std::size_t largestFile = std::size_t{256} << 20U;
constexpr std::size_t largestMetadata = 4096;
constexpr std::size_t mostFolders = 5000;
constexpr std::size_t mostUnnamedCalendars = 24;
constexpr std::size_t longestSlug = 40;
constexpr std::string_view calendarSuffix = ".ics";

class Descriptor {
public:
    explicit Descriptor(int value)
        : m_value(value) {}
    ~Descriptor() {
        if (m_value >= 0) {
            close(m_value);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_value; }
    bool isOpen() const { return m_value >= 0; }

private:
    int m_value;
};

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

struct Version {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = -1;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    bool operator==(const Version&) const = default;
};

Version versionOf(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec};
}

std::string reasonOf(int error) {
    return std::generic_category().message(error);
}

// The whole of a file in the buffer; 0, or an errno.
int readAll(int descriptor, std::size_t expected, std::size_t largest, std::string& buffer) {
    std::size_t used = 0;
    if (buffer.size() < expected + 1) {
        buffer.resize(expected + 1);
    }
    while (true) {
        const ssize_t got = read(descriptor, buffer.data() + used, buffer.size() - used);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return errno;
        }
        used += static_cast<std::size_t>(got);
        if (got == 0 || (used == expected && used < buffer.size())) {
            buffer.resize(used);
            return 0;
        }
        if (used > largest) {
            return EFBIG;
        }
        if (used == buffer.size()) {
            buffer.resize(buffer.size() * 2);
        }
    }
}

// Opens a file that was seen to be a regular one, and makes sure that it still is.
int openRegular(int folder, const char* name, struct stat& status) {
    const int descriptor = openat(folder, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return -1;
    }
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        errno = EINVAL;
        return -1;
    }
    return descriptor;
}

bool endsLikeCalendar(std::string_view name) {
    return name.size() > calendarSuffix.size() &&
           equalsIgnoringCase(name.substr(name.size() - calendarSuffix.size()), ".ICS");
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

// Letters and digits, the rest as single hyphens: fit for a link and for a file's name.
std::string slugOf(std::string_view name) {
    std::string slug;
    for (const char c : name.substr(0, std::min(name.size(), std::size_t{256}))) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || c == '_' || c == '.';
        if (plain) {
            slug += c;
        } else if (!slug.empty() && slug.back() != '-') {
            slug += '-';
        }
        if (slug.size() == longestSlug) {
            break;
        }
    }
    while (!slug.empty() && slug.back() == '-') {
        slug.pop_back();
    }
    return slug.empty() ? "calendar" : slug;
}

std::string identifierOf(std::string_view name, std::string_view place) {
    return slugOf(name) + "-" + hexDigits(stableHash(place), 8);
}

std::string withoutLineBreaks(std::string text) {
    const auto isBlank = [](char c) { return c == '\n' || c == '\r' || c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.back())) {
        text.pop_back();
    }
    return text;
}

std::shared_ptr<LoadedFile> load(std::string path, std::string_view bytes,
                                 const ReadContext& context) {
    auto file = std::make_shared<LoadedFile>();
    file->path = std::move(path);
    file->ics = readIcsFile(bytes, context.zoneIsKnown);
    for (const FileProblem& problem : file->ics.problems) {
        context.report({file->path, problem.line, problem.what});
    }
    file->ics.problems = {};
    return file;
}

// What a calendar is called, when its own files do not say it.
struct Names {
    std::string identifier;
    std::optional<std::string> title;
    std::optional<std::string> colour;
    std::string fallbackTitle;
};

std::shared_ptr<LoadedCalendar> makeCalendar(const Names& names,
                                             std::vector<std::shared_ptr<LoadedFile>> files) {
    auto calendar = std::make_shared<platform::EKCalendar>();
    calendar->calendarIdentifier = names.identifier;
    const bool hasTitle = names.title && !names.title->empty();
    calendar->title = hasTitle ? *names.title : validUtf8(names.fallbackTitle);
    const auto colour = names.colour ? calendarColour(*names.colour) : std::nullopt;
    calendar->CGColor = colour ? *colour : stableColour(names.identifier);

    auto result = std::make_shared<LoadedCalendar>();
    result->calendar = std::move(calendar);
    result->files = std::move(files);
    EventSet set = collectEvents(result->files);
    result->entries = std::move(set.entries);
    result->overrides = std::move(set.overrides);
    return result;
}

std::shared_ptr<LoadedCalendar> calendarOfFile(const std::shared_ptr<LoadedFile>& file,
                                               std::string_view name, std::string_view place) {
    const Names names{identifierOf(name, place), file->ics.calendarName, file->ics.calendarColour,
                      std::string(name)};
    return makeCalendar(names, {file});
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

} // namespace

// One file at its place; what it holds is null where it cannot be read.
struct CalendarFiles::File {
    std::string name;
    Version version;
    int error = 0;
    bool seen = false; // at the current refresh
    std::string metadata;
    std::shared_ptr<LoadedFile> loaded;
};

struct CalendarFiles::Folder {
    std::string path; // for messages
    std::string name;
    int error = 0;
    std::vector<File> files;                         // .ics files, sorted
    std::vector<File> metadata;                      // color, displayname
    std::vector<std::unique_ptr<Folder>> subFolders; // sorted

    bool isCalendar() const { return !files.empty() || !metadata.empty(); }
    bool looksLikeCalendar() const;
    std::optional<std::string> metadataNamed(std::string_view wanted) const;
};

struct CalendarFiles::Walk {
    const ReadContext& context;
    std::set<std::pair<dev_t, ino_t>> visited; // against loops of links
    int depth = 0;

    bool refreshFiles(std::span<File> files, int descriptor, const std::string& path,
                      bool isMetadata) const;
    bool refreshList(std::vector<File>& files, std::vector<std::string> names, int descriptor,
                     const std::string& path, bool isMetadata);
};

bool CalendarFiles::Folder::looksLikeCalendar() const {
    if (!metadata.empty()) {
        return true;
    }
    std::size_t oneEvent = 0;
    std::size_t named = 0;
    for (const File& file : files) {
        if (file.loaded && file.loaded->ics.looksLikeOneEvent()) {
            const IcsFile& ics = file.loaded->ics;
            ++oneEvent;
            named += nameTellsUid(stemOf(file.name), ics.slice(ics.events.front().uid)) ? 1 : 0;
        }
    }
    const std::size_t half = files.size() / 2;
    return named > half || (oneEvent > half && files.size() > mostUnnamedCalendars);
}

std::optional<std::string> CalendarFiles::Folder::metadataNamed(std::string_view wanted) const {
    for (const File& file : metadata) {
        if (file.name == wanted && file.error == 0) {
            return validUtf8(withoutLineBreaks(file.metadata));
        }
    }
    return std::nullopt;
}

// Reads the files of a folder, one after the other, with one buffer.
class CalendarFiles::FileReader {
public:
    FileReader(const ReadContext& context, int folder, std::string path, bool isMetadata)
        : m_context(context)
        , m_folder(folder)
        , m_path(std::move(path))
        , m_isMetadata(isMetadata) {}

    // Whether one of them is not what it was.
    bool refresh(std::span<File> files) {
        bool changed = false;
        for (File& file : files) {
            changed = refresh(file) || changed;
        }
        return changed;
    }

    bool refresh(File& file);

private:
    std::string pathOf(const File& file) const {
        return m_path.empty() ? file.name : m_path + "/" + file.name;
    }

    const ReadContext& m_context;
    int m_folder;
    std::string m_path; // empty: the files' names are whole paths
    bool m_isMetadata;
    std::string m_buffer;
};

bool CalendarFiles::FileReader::refresh(File& file) {
    struct stat status {};
    const bool wasRead = file.loaded || m_isMetadata;
    if (wasRead && fstatat(m_folder, file.name.c_str(), &status, 0) == 0 &&
        versionOf(status) == file.version) {
        return false;
    }
    const Descriptor descriptor(openRegular(m_folder, file.name.c_str(), status));
    int error = descriptor.isOpen() ? 0 : errno;
    const std::size_t largest = m_isMetadata ? largestMetadata : largestFile;
    if (error == 0 && static_cast<std::size_t>(status.st_size) > largest) {
        error = EFBIG;
    }
    if (error == 0) {
        error =
            readAll(descriptor.get(), static_cast<std::size_t>(status.st_size), largest, m_buffer);
    }
    if (error != 0) {
        const bool isNew = error != file.error;
        const bool hadContent = file.loaded != nullptr;
        file.error = error;
        file.loaded = nullptr;
        if (isNew) {
            m_context.report({pathOf(file), 0, "it cannot be read: " + reasonOf(error)});
        }
        return isNew || hadContent;
    }
    file.error = 0;
    file.version = versionOf(status);
    if (m_isMetadata) {
        file.metadata = m_buffer;
    } else {
        file.loaded = load(pathOf(file), m_buffer, m_context);
    }
    return true;
}

// Many files are read by two threads, half of them each; what is wrong is told in their order.
bool CalendarFiles::Walk::refreshFiles(std::span<File> files, int descriptor,
                                       const std::string& path, bool isMetadata) const {
    constexpr std::size_t fewestForTwo = 200;
    FileReader reader(context, descriptor, path, isMetadata);
    if (files.size() < fewestForTwo) {
        return reader.refresh(files);
    }
    std::vector<CalendarProblem> problems;
    const ReadContext otherContext{
        context.zoneIsKnown,
        [&problems](const CalendarProblem& problem) { problems.push_back(problem); }};
    FileReader otherReader(otherContext, descriptor, path, isMetadata);
    const std::size_t half = files.size() / 2;
    // Deferred where the system has no thread to give: one reads them all then.
    std::future<bool> other =
        std::async(std::launch::async | std::launch::deferred, [&otherReader, files, half] {
            return otherReader.refresh(files.subspan(half));
        });
    const bool changed = reader.refresh(files.first(half));
    const bool otherChanged = other.get();
    for (const CalendarProblem& problem : problems) {
        context.report(problem);
    }
    return changed || otherChanged;
}

// Names are sorted, as the files are; both are walked side by side.
bool CalendarFiles::Walk::refreshList(std::vector<File>& files, std::vector<std::string> names,
                                      int descriptor, const std::string& path, bool isMetadata) {
    bool changed = false;
    std::vector<File> before = std::move(files);
    files.clear();
    files.reserve(names.size());
    auto old = before.begin();
    for (std::string& name : names) {
        while (old != before.end() && old->name < name) {
            changed = true;
            ++old;
        }
        if (old != before.end() && old->name == name) {
            files.push_back(std::move(*old++));
        } else {
            changed = true;
            files.emplace_back();
            files.back().name = std::move(name);
        }
    }
    changed = refreshFiles(files, descriptor, path, isMetadata) || changed;
    return changed || old != before.end();
}

CalendarFiles::CalendarFiles(CalendarSource source)
    : m_source(std::move(source)) {}

CalendarFiles::~CalendarFiles() = default;

void CalendarFiles::refresh(const ReadContext& context) {
    const bool changed = m_source.text ? refreshText(context) : refreshPath(context);
    if (changed) {
        m_calendars.clear();
        build();
    }
}

bool CalendarFiles::refreshText(const ReadContext& context) {
    if (m_file) {
        return false;
    }
    m_file = std::make_unique<File>();
    m_file->name = m_source.name;
    m_file->loaded = load(m_source.name, *m_source.text, context);
    m_isReadable = true;
    return true;
}

bool CalendarFiles::refreshPath(const ReadContext& context) {
    const bool isAFolder = isFolder(m_source.name);
    if (m_source.isOptional && !isAFolder) {
        return forget();
    }
    if (const auto problem = problemWithSource(m_source)) {
        if (*problem != m_problem) {
            m_problem = *problem;
            context.report({m_source.name, 0, *problem});
        }
        return forget();
    }
    m_problem.clear();
    Walk walk{context, {}, 0};
    if (isAFolder) {
        const bool isNew = m_folder == nullptr;
        m_file = nullptr;
        if (isNew) {
            m_folder = std::make_unique<Folder>();
            m_folder->path = m_source.name;
            while (m_folder->path.size() > 1 && m_folder->path.back() == '/') {
                m_folder->path.pop_back();
            }
            m_folder->name = lastPart(canonicalPath(m_source.name));
        }
        const bool changed = refreshFolder(*m_folder, walk);
        m_isReadable = m_folder->error == 0;
        return changed || isNew;
    }
    const bool isNew = m_file == nullptr;
    m_folder = nullptr;
    if (isNew) {
        m_file = std::make_unique<File>();
        m_file->name = m_source.name;
    }
    const bool changed = FileReader(context, AT_FDCWD, {}, false).refresh(*m_file);
    m_isReadable = m_file->error == 0;
    return changed || isNew;
}

bool CalendarFiles::forget() {
    m_isReadable = false;
    m_file = nullptr;
    m_folder = nullptr;
    return true;
}

bool CalendarFiles::refreshFolder(Folder& folder, Walk& walk) {
    const Descriptor descriptor(
        open(folder.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    const int copy = descriptor.isOpen() ? dup(descriptor.get()) : -1;
    const std::unique_ptr<DIR, CloseDirectory> directory(copy >= 0 ? fdopendir(copy) : nullptr);
    if (!directory || fstat(descriptor.get(), &status) != 0) {
        const int error = errno;
        if (error != folder.error) {
            walk.context.report({folder.path, 0, "it cannot be read: " + reasonOf(error)});
        }
        folder.error = error;
        folder.files.clear();
        folder.metadata.clear();
        folder.subFolders.clear();
        return true;
    }
    folder.error = 0;
    if (walk.visited.size() >= mostFolders ||
        !walk.visited.insert({status.st_dev, status.st_ino}).second) {
        return false;
    }

    std::vector<std::string> calendars;
    std::vector<std::string> metadata;
    std::vector<std::string> folders;
    while (const dirent* entry = readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name.front() == '.') {
            continue;
        }
        bool isFile = entry->d_type == DT_REG;
        bool isFolder = entry->d_type == DT_DIR;
        if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) {
            const bool exists = fstatat(descriptor.get(), entry->d_name, &status, 0) == 0;
            isFile = exists && S_ISREG(status.st_mode);
            isFolder = exists && S_ISDIR(status.st_mode);
        }
        if (isFolder) {
            folders.emplace_back(name);
        } else if (isFile && endsLikeCalendar(name)) {
            calendars.emplace_back(name);
        } else if (isFile && isMetadataName(name)) {
            metadata.emplace_back(name);
        }
    }
    std::sort(calendars.begin(), calendars.end());
    std::sort(metadata.begin(), metadata.end());
    bool changed =
        walk.refreshList(folder.files, std::move(calendars), descriptor.get(), folder.path, false);
    changed = walk.refreshList(folder.metadata, std::move(metadata), descriptor.get(), folder.path,
                               true) ||
              changed;
    return refreshChildren(folder, std::move(folders), walk) || changed;
}

bool CalendarFiles::refreshChildren(Folder& folder, std::vector<std::string> names, Walk& walk) {
    if (walk.depth >= deepestCalendarFolder) {
        names.clear();
    }
    std::sort(names.begin(), names.end());
    bool changed = names.size() != folder.subFolders.size();
    std::vector<std::unique_ptr<Folder>> before = std::move(folder.subFolders);
    folder.subFolders.clear();
    ++walk.depth;
    for (const std::string& name : names) {
        const auto old =
            std::find_if(before.begin(), before.end(), [&](const std::unique_ptr<Folder>& one) {
                return one != nullptr && one->name == name;
            });
        if (old == before.end()) {
            changed = true;
            folder.subFolders.push_back(std::make_unique<Folder>());
            folder.subFolders.back()->name = name;
            folder.subFolders.back()->path = folder.path + "/" + name;
        } else {
            folder.subFolders.push_back(std::move(*old));
        }
        changed = refreshFolder(*folder.subFolders.back(), walk) || changed;
    }
    --walk.depth;
    return changed;
}

void CalendarFiles::build() {
    if (m_file && m_file->loaded) {
        const std::string place =
            m_source.text ? "text:" + m_source.name : canonicalPath(m_source.name);
        m_calendars.push_back(
            calendarOfFile(m_file->loaded, stemOf(lastPart(m_source.name)), place));
    } else if (m_folder) {
        buildFolder(*m_folder, true);
    }
}

void CalendarFiles::buildFolder(const Folder& folder, bool isRoot) {
    const bool isOne = isRoot ? folder.looksLikeCalendar() : folder.isCalendar();
    const std::string place = canonicalPath(folder.path);
    std::vector<std::shared_ptr<LoadedFile>> files;
    for (const File& file : folder.files) {
        if (file.loaded && isOne) {
            files.push_back(file.loaded);
        } else if (file.loaded) {
            m_calendars.push_back(
                calendarOfFile(file.loaded, stemOf(file.name), place + "/" + file.name));
        }
    }
    if (isOne) {
        const Names names{identifierOf(folder.name, place), folder.metadataNamed("displayname"),
                          folder.metadataNamed("color"), folder.name};
        m_calendars.push_back(makeCalendar(names, std::move(files)));
    }
    for (const auto& subFolder : folder.subFolders) {
        buildFolder(*subFolder, false);
    }
}

} // namespace quorvel::freedesktop::ics

namespace quorvel::freedesktop {

bool mayBelongToCalendar(std::string_view name) {
    return ics::endsLikeCalendar(name) || ics::isMetadataName(name);
}

} // namespace quorvel::freedesktop
