// A folder of calendar files with the folders in it: a tree of what the last scan found and of what
// was read.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/content_hash.h"
#include "freedesktop/calendars/files/calendar_file.h"
#include "freedesktop/calendars/files/calendar_problem.h"

namespace quorvel::freedesktop::calendars {

inline constexpr std::size_t mostFilesInAFolder = 250000;

struct CalendarFolder {
    std::string path;     // below the source's own path; for messages
    std::string realPath; // with all links resolved
    std::string name;
    std::optional<FileError> error;                          // absent: the folder could be listed
    bool hasTooMany = false;                                 // more files than mostFilesInAFolder
    std::vector<CalendarFile> files;                         // .ics files, sorted by name
    std::vector<CalendarFile> metadata;                      // `color` and `displayname`, sorted
    std::vector<std::unique_ptr<CalendarFolder>> subFolders; // sorted by name
};

// A file that has to be read, or read again. The file outlives it.
struct UnreadFile {
    CalendarFile* file = nullptr;
    FileKind kind = FileKind::calendar;
    std::string path;     // for messages, and to open it
    std::string realPath; // with all links resolved
};

// The folder holds calendar files or metadata, so that it may be one calendar.
bool hasCalendarFiles(const CalendarFolder& folder);
// The folder is one calendar with an event in each file, and not a folder of calendars: it holds
// metadata, or most of its files look like single events.
bool looksLikeOneCalendar(const CalendarFolder& folder);
// The first line of the metadata file with that name; absent where there is none.
std::optional<std::string> metadataNamed(const CalendarFolder& folder, std::string_view name);
// No file below the folder will be read otherwise the next time unless its version changes.
bool isSettled(const CalendarFolder& folder);

// These walk the whole tree, files before folders, in the order of their names.
void addToSignature(const CalendarFolder& folder, SignatureHash& signature);
void addProblems(const CalendarFolder& folder, std::vector<VersionedProblem>& problems);
void addUnreadFiles(CalendarFolder& folder, std::vector<UnreadFile>& unread);
void addParsedFiles(const CalendarFolder& folder, std::vector<const CalendarFile*>& parsed);

// The same of a version, and of a single file.
void addToSignature(const FileVersion& version, SignatureHash& signature);
void addToSignature(const CalendarFile& file, SignatureHash& signature);
void addProblems(const CalendarFile& file, const std::string& path,
                 std::vector<VersionedProblem>& problems);

} // namespace quorvel::freedesktop::calendars
