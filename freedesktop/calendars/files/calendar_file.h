// One file of a source at its place: what was seen of it, and what was read.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "freedesktop/io/file_version.h"
#include "icalendar/expansion/occurrences.h"
#include "icalendar/model/ics_file_reader.h"

namespace quorvel::freedesktop::calendars {

// In place of an errno: the file is left out, as there are more events than can be kept.
inline constexpr int noRoom = -1;

struct CalendarFile {
    std::string name;
    FileVersion seen;  // by the last look at it
    int seenError = 0; // an errno; not 0: it could not be looked at

    bool wasRead = false;
    FileVersion version; // of what was read
    bool isSettled = false;
    int error = 0;          // an errno; not 0: it could not be read
    std::uint64_t hash = 0; // of the bytes, where they are not settled
    std::shared_ptr<icalendar::LoadedFile>
        loaded;           // null where there is an error; of a calendar alone
    std::string metadata; // of a file that names or colours a calendar

    // What was read is what lies there.
    bool isCurrent() const;
    // An error that comes from what was seen, and stays as long as that is seen.
    bool isErrorLasting() const;

    void setLoaded(const std::string& path, const FileVersion& readVersion, icalendar::IcsFile ics);
    void leaveOut(); // for lack of room
};

enum class FileKind { calendar, metadata };

struct ReadContext {
    std::function<bool(std::string_view)> zoneIsKnown; // exactly; from any thread
    std::function<std::int64_t()> fileClock;           // likewise; nanoseconds since 1970
    const std::atomic<bool>* isCancelled = nullptr;    // nobody wants to know any longer
    // In memory. A file that takes more is left out.
    std::size_t mostBytes = icalendar::IcsFileReader::mostBytesOfAFile;
};

// Reads the file at the path. Nothing but a regular file is opened, and only so much of it is in
// memory at a time as a line takes. What is the same, byte for byte, is not taken apart again.
void readCalendarFile(CalendarFile& file, const std::string& path, FileKind kind,
                      const ReadContext& context);

} // namespace quorvel::freedesktop::calendars
