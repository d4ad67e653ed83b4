// A calendar while it arrives from a server: a file that becomes the copy once it is complete.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/result.h"
#include "base/translatable_text.h"
#include "freedesktop/io/file_descriptor.h"

namespace quorvel::app {

struct ReceiveError {
    TranslatableText what;
    TranslatableText toDo; // may be empty
};

class ReceivedCalendar {
public:
    // Replaces a file that is there already.
    static Result<ReceivedCalendar, ReceiveError> create(const std::string& path);

    Result<void, ReceiveError> receive(std::string_view piece);
    // Checks that the content is a whole calendar, and writes it to the disk.
    Result<void, ReceiveError> finish();

    std::uint64_t size() const { return m_size; } // bytes
    // As the calendar calls itself; empty if it has no name. After finish().
    const std::string& calendarName() const { return m_calendarName; }

private:
    ReceivedCalendar(std::string path, freedesktop::FileDescriptor file)
        : m_path(std::move(path))
        , m_file(std::move(file)) {}
    Result<void, ReceiveError> checkContent();
    ReceiveError writeError(int number) const;

    std::string m_path;
    freedesktop::FileDescriptor m_file;
    std::uint64_t m_size = 0;
    std::string m_start; // of the content
    std::string m_end;   // likewise
    std::string m_calendarName;
};

// The error, if this is how something starts that is no calendar.
Result<void, ReceiveError> checkStart(std::string_view start);
// Whether the last bytes of a text contain the end of a calendar.
bool hasCalendarEnd(std::string_view end);

} // namespace quorvel::app
