#include "freedesktop/calendars/files/source_files.h"

#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/calendars/files/calendar_file_names.h"
#include "freedesktop/calendars/files/folder_scanner.h"
#include "icalendar/model/ics_file_parser.h"

namespace quorvel::freedesktop::calendars {
namespace {

bool isFolder(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string withoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

} // namespace

SourceFiles::SourceFiles(CalendarSource source)
    : m_source(std::move(source)) {
    if (m_source.text) {
        m_isReadable = true;
        m_realPath = "text:" + m_source.name;
    }
}

void SourceFiles::scan(const std::function<bool(std::string_view)>& zoneIsKnown) {
    if (!m_source.text) {
        scanPath();
    } else if (!m_file) {
        m_file = std::make_unique<CalendarFile>();
        m_file->name = m_source.name;
        const auto loaded = std::make_shared<icalendar::LoadedFile>(
            m_source.name, 0, icalendar::parseIcsFile(*m_source.text, zoneIsKnown));
        m_file->parsed = {FileVersion(), true, 0, FileContent{loaded, nullptr}};
    }
}

void SourceFiles::scanPath() {
    const bool isAFolder = isFolder(m_source.name);
    m_problem = {};
    const bool isMissingCopy = m_source.copy && access(m_source.name.c_str(), F_OK) != 0;
    if (isMissingCopy || (m_source.isOptional && !isAFolder)) {
        removeFiles();
        return;
    }
    if (const auto check = checkSource(m_source); !check) {
        m_problem = check.error();
        removeFiles();
        return;
    }
    m_realPath = realPath(m_source.name);
    if (isAFolder) {
        scanFolderAtPath();
    } else {
        scanFileAtPath();
    }
}

void SourceFiles::scanFolderAtPath() {
    m_file = nullptr;
    if (!m_folder) {
        m_folder = std::make_unique<CalendarFolder>();
    }
    m_folder->path = withoutTrailingSlashes(m_source.name);
    m_folder->realPath = m_realPath;
    m_folder->name = lastComponent(m_realPath);
    scanFolder(*m_folder);
    m_isReadable = !m_folder->error;
}

void SourceFiles::scanFileAtPath() {
    m_folder = nullptr;
    if (!m_file) {
        m_file = std::make_unique<CalendarFile>();
        m_file->name = m_source.name;
        m_file->label = m_source.copy ? m_source.copy->label : "";
    }
    scanFile(*m_file);
    m_isReadable = m_file->listed.hasValue();
}

void SourceFiles::removeFiles() {
    m_isReadable = false;
    m_file = nullptr;
    m_folder = nullptr;
}

void SourceFiles::addTo(SignatureHash& signature) const {
    signature.add(std::string_view(m_source.name));
    signature.add(m_source.isOptional);
    if (m_source.copy) {
        addCopyTo(signature);
    }
    signature.add(std::string_view(m_problem.english()));
    signature.add(std::string_view(m_realPath));
    signature.add(m_file ? 1 : 0);
    if (m_source.text) {
        signature.add(std::string_view(*m_source.text));
    } else if (m_file) {
        addToSignature(*m_file, signature);
    }
    signature.add(m_folder ? 1 : 0);
    if (m_folder) {
        addToSignature(*m_folder, signature);
    }
}

// Everything of it that is shown.
void SourceFiles::addCopyTo(SignatureHash& signature) const {
    const CopiedCalendar& copy = *m_source.copy;
    for (const std::string* const text : {&copy.origin, &copy.host, &copy.label}) {
        signature.add(std::string_view(*text));
    }
    for (const auto* const text : {&copy.title, &copy.colour}) {
        signature.add(text->has_value());
        signature.add(std::string_view(text->value_or("")));
    }
}

// For messages.
const std::string& SourceFiles::label() const {
    return m_source.copy ? m_source.copy->label : m_source.name;
}

std::vector<UnreadFile> SourceFiles::unreadFiles() {
    std::vector<UnreadFile> unread;
    if (m_folder) {
        addUnreadFiles(*m_folder, unread);
    } else if (m_file && !m_source.text && !m_file->isCurrent()) {
        unread.push_back({m_file.get(), FileKind::calendar, m_file->name, m_realPath});
    }
    return unread;
}

std::vector<const CalendarFile*> SourceFiles::parsedFiles() const {
    std::vector<const CalendarFile*> parsed;
    if (m_folder) {
        addParsedFiles(*m_folder, parsed);
    } else if (m_file && m_file->calendar()) {
        parsed.push_back(m_file.get());
    }
    return parsed;
}

std::size_t SourceFiles::bytesInMemory() const {
    std::size_t bytes = 0;
    for (const CalendarFile* const file : parsedFiles()) {
        bytes += file->isCurrent() ? file->calendar()->ics.sizeInMemory() : 0;
    }
    return bytes;
}

bool SourceFiles::isSettled() const {
    if (m_source.text) {
        return true;
    }
    return m_folder ? calendars::isSettled(*m_folder) : !m_file || m_file->isSettled();
}

void SourceFiles::addTo(std::vector<VersionedProblem>& problems) const {
    if (!m_problem.empty()) {
        problems.push_back({{label(), 0, m_problem}, 0, true});
    } else if (m_folder) {
        addProblems(*m_folder, problems);
    } else if (m_file) {
        addProblems(*m_file, label(), problems);
    }
}

void SourceFiles::build() {
    for (auto& calendar : std::exchange(m_calendars, {})) {
        m_previousCalendars.emplace(calendar->calendar->calendarIdentifier, std::move(calendar));
    }
    if (m_folder) {
        buildFolder(*m_folder, true);
    } else if (m_file && m_file->calendar() && m_source.copy) {
        addCopiedCalendar(m_file->calendar(), *m_source.copy);
    } else if (m_file && m_file->calendar()) {
        addCalendarOfFile(m_file->calendar(), stemOf(lastComponent(m_source.name)), m_realPath);
    }
    m_previousCalendars.clear();
    collectEvents(std::exchange(m_newCalendars, {}));
}

void SourceFiles::buildFolder(const CalendarFolder& folder, bool isRoot) {
    const bool isOne = isRoot ? looksLikeOneCalendar(folder) : hasCalendarFiles(folder);
    std::vector<std::shared_ptr<icalendar::LoadedFile>> files;
    for (const CalendarFile& file : folder.files) {
        const auto calendar = file.calendar();
        if (calendar && isOne) {
            files.push_back(calendar);
        } else if (calendar) {
            addCalendarOfFile(calendar, stemOf(file.name), folder.realPath + "/" + file.name);
        }
    }
    if (isOne) {
        addCalendar({calendarIdentifier(folder.name, folder.realPath),
                     metadataNamed(folder, "displayname"), metadataNamed(folder, "color"),
                     folder.name},
                    folder.path, std::move(files));
    }
    for (const auto& subFolder : folder.subFolders) {
        buildFolder(*subFolder, false);
    }
}

void SourceFiles::addCalendarOfFile(const std::shared_ptr<icalendar::LoadedFile>& file,
                                    std::string_view name, std::string_view filePath) {
    addCalendar({calendarIdentifier(name, filePath), file->ics.calendarName,
                 file->ics.calendarColour, std::string(name)},
                m_source.text ? translatable("in memory") : file->path, {file});
}

void SourceFiles::addCopiedCalendar(const std::shared_ptr<icalendar::LoadedFile>& file,
                                    const CopiedCalendar& copy) {
    addCalendar({calendarIdentifier(copy.host, copy.origin),
                 copy.title ? copy.title : file->ics.calendarName,
                 copy.colour ? copy.colour : file->ics.calendarColour, copy.host},
                copy.host, {file});
}

void SourceFiles::addCalendar(const CalendarNames& names, const std::string& store,
                              std::vector<std::shared_ptr<icalendar::LoadedFile>> files) {
    auto calendar = namedCalendar(names);
    const auto previous = m_previousCalendars.find(calendar->calendarIdentifier);
    const bool isUnchanged = previous != m_previousCalendars.end() &&
                             previous->second->calendar->title == calendar->title &&
                             previous->second->calendar->CGColor == calendar->CGColor &&
                             previous->second->files == files;
    if (isUnchanged) {
        m_calendars.push_back(previous->second);
    } else {
        m_calendars.push_back(std::make_shared<LoadedCalendar>());
        m_calendars.back()->calendar = std::move(calendar);
        m_calendars.back()->files = std::move(files);
        m_newCalendars.push_back(m_calendars.back());
    }
    m_calendars.back()->store = store;
}

} // namespace quorvel::freedesktop::calendars
