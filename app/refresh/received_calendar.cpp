#include "app/refresh/received_calendar.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "base/ascii_text.h"
#include "icalendar/model/ics_file_parser.h"

namespace quorvel::app {

namespace {

constexpr std::size_t longestStart = 16384; // bytes; the calendar's name is in them
constexpr std::size_t longestEnd = 4096;
constexpr std::string_view blanks = " \t\r\n";

icalendar::IcsFile parsedStart(std::string_view start) {
    return icalendar::parseIcsFile(start, [](std::string_view) { return true; });
}

} // namespace

Result<void, ReceiveError> checkStart(std::string_view start) {
    if (trimmedStart(start, blanks).empty()) {
        return ReceiveError{translatable("the server sends nothing"), {}};
    }
    if (trimmedStart(start, blanks).front() == '<') {
        return ReceiveError{
            translatable("the server sends a web page instead of a calendar"),
            translatable("give the address of the calendar itself, which often ends in .ics")};
    }
    if (!parsedStart(start).isCalendar) {
        return ReceiveError{translatable("what the server sends is no calendar"),
                            translatable("give the address of a calendar in the iCalendar format")};
    }
    return {};
}

bool hasCalendarEnd(std::string_view end) {
    std::string text = asciiUpperCase(end);
    std::erase(text, '\0'); // of a text in UTF-16
    return text.find("END:VCALENDAR") != std::string::npos;
}

Result<ReceivedCalendar, ReceiveError> ReceivedCalendar::create(const std::string& path) {
    ::unlink(path.c_str());
    freedesktop::FileDescriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    ReceivedCalendar calendar(path, std::move(file));
    return calendar.m_file.isOpen() ? Result<ReceivedCalendar, ReceiveError>(std::move(calendar))
                                    : calendar.writeError(errno);
}

Result<void, ReceiveError> ReceivedCalendar::receive(std::string_view piece) {
    m_size += piece.size();
    m_start += piece.substr(0, longestStart - m_start.size());
    m_end += piece.substr(piece.size() - std::min(piece.size(), longestEnd));
    m_end.erase(0, m_end.size() - std::min(m_end.size(), longestEnd));
    while (!piece.empty()) {
        const ssize_t count = ::write(m_file.get(), piece.data(), piece.size());
        if (count < 0 && errno != EINTR) {
            return writeError(errno);
        }
        piece.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return {};
}

Result<void, ReceiveError> ReceivedCalendar::finish() {
    if (const auto checked = checkContent(); !checked) {
        return checked;
    }
    if (::fsync(m_file.get()) != 0) {
        return writeError(errno);
    }
    if (const auto closed = m_file.close(); !closed) {
        return writeError(closed.error().value());
    }
    return {};
}

Result<void, ReceiveError> ReceivedCalendar::checkContent() {
    if (const auto checked = checkStart(m_start); !checked) {
        return checked;
    }
    if (!hasCalendarEnd(m_end)) {
        return ReceiveError{translatable("the calendar breaks off before its end"), {}};
    }
    m_calendarName = parsedStart(m_start).calendarName.value_or("");
    return {};
}

ReceiveError ReceivedCalendar::writeError(int number) const {
    return {{translatable("the file '{1}' cannot be written ({2})"),
             {TranslatableText::verbatim(m_path), TranslatableText(std::strerror(number))}},
            {}};
}

} // namespace quorvel::app
