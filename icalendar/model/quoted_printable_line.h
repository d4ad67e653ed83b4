// A content line in quoted-printable (RFC 2045 6.7, as vCalendar 1.0 uses it) that goes on in the
// next lines: behind an equals sign at its end, whatever those lines contain.
#pragma once

#include <cstddef>
#include <string>

#include "icalendar/text/content_lines.h"

namespace quorvel::icalendar {

class QuotedPrintableLine {
public:
    bool isOpen() const { return m_isOpen; }
    // Opens it where the line is in quoted-printable and ends with an equals sign. False: it is an
    // ordinary line.
    bool begin(const RawLine& line);
    // Only while it is open. Adds the next line, and closes it where that was the last one. False:
    // the line is no part of it, but begins or ends a component, as an equals sign is easily left
    // at the end of a text.
    bool append(const RawLine& line);
    void close() { m_isOpen = false; }

    // All of it, without folds and the equals signs at the ends. Valid until the next begin().
    RawLine line() const { return {m_text, false, m_number}; }

private:
    bool m_isOpen = false;
    std::string m_text;
    std::size_t m_number = 0;
};

} // namespace quorvel::icalendar
