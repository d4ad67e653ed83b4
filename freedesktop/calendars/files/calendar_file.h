// One file of a source: which version of it the last scan found, and what was read of it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/result.h"
#include "freedesktop/calendars/files/file_error.h"
#include "freedesktop/io/file_version.h"
#include "icalendar/expansion/loaded_file.h"
#include "icalendar/model/ics_file_parser.h"

namespace quorvel::freedesktop::calendars {

class FileTail;

enum class FileKind { calendar, metadata };

// One of the two, by the file's kind; the other is null.
struct FileContent {
    std::shared_ptr<icalendar::LoadedFile> calendar;
    std::shared_ptr<const std::string> metadata; // the bytes of a file that names or colours one
};

// What was read of one version of a file.
struct ParsedVersion {
    FileVersion version;
    // Every later change of the file will show in its version. Not so for a file that was written
    // within a clock tick of being read.
    bool isSettled = false;
    std::uint64_t hash = 0; // of the bytes, where they may have to be compared later; else 0
    Result<FileContent, FileError> content{FileContent()};
};

struct CalendarFile {
    std::string name;
    std::string label;                                    // in messages; empty: the path
    Result<FileVersion, FileError> listed{FileVersion()}; // by the last scan
    std::optional<ParsedVersion> parsed;                  // absent: the file was not read yet

    // The version that the last scan found is the one that was read.
    bool isCurrent() const;
    // Nothing will be read otherwise the next time, unless the file's version changes.
    bool isSettled() const;
    // Null where the file was not read, could not be read, or is no calendar file.
    std::shared_ptr<icalendar::LoadedFile> calendar() const;

    void setCalendar(const std::string& path, const FileVersion& version, bool isSettled,
                     icalendar::IcsFile ics);
    void leaveOutForLackOfRoom();
};

struct ReadContext {
    // Whether a time zone's name, spelled exactly so, needs no definition. From any thread.
    std::function<bool(std::string_view)> zoneIsKnown;
    std::function<std::int64_t()> fileClock;        // nanoseconds since 1970. From any thread.
    const std::atomic<bool>* isCancelled = nullptr; // may be null: it is never cancelled
    // In memory. A file whose events take more is left out.
    std::size_t mostBytes = icalendar::IcsFileParser::mostBytesOfAFile;
};

// Reads the file at the path into `file.parsed`. Opens nothing but a regular file, and holds about
// a line of it in memory at a time. A file with the same bytes as before is not parsed again. A
// second thread may parse the tail of it; null: there is none.
void readCalendarFile(CalendarFile& file, const std::string& path, FileKind kind,
                      const ReadContext& context, FileTail* tail = nullptr);

} // namespace quorvel::freedesktop::calendars
