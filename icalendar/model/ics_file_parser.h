// From the bytes of a calendar (RFC 5545 3.1, 3.4; vCalendar 1.0) to the parsed file. What is not
// stored is skipped while the bytes are parsed.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

#include "icalendar/model/ics_file.h"

namespace quorvel::icalendar {

// Parses a text that comes in pieces: UTF-8, or UTF-16 where it begins with that byte-order mark.
// Never fails: what cannot be parsed is left out, and IcsFile::problems names it by its line. For
// one thread.
class IcsFileParser {
public:
    static constexpr std::size_t mostBytesOfAFile = std::size_t{250} << 20U; // a million events

    // The function returns whether a time zone is known by that exact name, so that its definition
    // in the file is not needed; it must outlive the parser. What would take more memory than
    // mostBytes is left out, and the file marked as truncated.
    explicit IcsFileParser(const std::function<bool(std::string_view)>& zoneIsKnown,
                           std::size_t mostBytes = mostBytesOfAFile);
    ~IcsFileParser();
    IcsFileParser(const IcsFileParser&) = delete;
    IcsFileParser& operator=(const IcsFileParser&) = delete;

    // Returns how many bytes of the piece were parsed; the next piece begins with the rest.
    std::size_t read(std::string_view piece);
    // For a text that two threads parse in two parts, of which the second one begins with a line
    // BEGIN:VEVENT. Its parser begins as if it stood within a VCALENDAR of which nothing else is
    // known. Each part's last piece is passed to readLines(), which takes its end for a line's end.
    void beginWithinCalendar();
    std::size_t readLines(std::string_view piece);
    // Adds what another parser made of the second part. False, and nothing is added, where the
    // result could differ from that of parsing all of it here; then the part is to be parsed here.
    bool append(const IcsFileParser& second);

    // Reserves memory for so many more bytes of text, which are taken to be like those before.
    void expect(std::size_t bytes);
    // Once, with the last piece.
    IcsFile finish(std::string_view piece);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

// Parses a whole text at once.
IcsFile parseIcsFile(std::string_view bytes,
                     const std::function<bool(std::string_view)>& zoneIsKnown);

} // namespace quorvel::icalendar
