// From the bytes of a calendar (RFC 5545 3.4, 3.6; vCalendar 1.0) to what is stored of it.
// Everything else is skipped while the bytes are read.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

#include "icalendar/model/ics_file.h"

namespace quorvel::icalendar {

// Reads a text that comes in pieces, of UTF-8, or of UTF-16 where it begins with the mark of that.
// Never fails: what cannot be read is left out and named. Zones whose exact name is known need no
// definition, and theirs is passed over.
class IcsFileParser {
public:
    static constexpr std::size_t mostBytesOfAFile = std::size_t{250} << 20U; // a million events

    // The function must outlive the reader. What would take more bytes in memory is left out.
    explicit IcsFileParser(const std::function<bool(std::string_view)>& zoneIsKnown,
                           std::size_t mostBytes = mostBytesOfAFile);
    ~IcsFileParser();
    IcsFileParser(const IcsFileParser&) = delete;
    IcsFileParser& operator=(const IcsFileParser&) = delete;

    // How much of the piece was taken in; the next piece begins with the rest.
    std::size_t read(std::string_view piece);
    // So many bytes are to come, and are taken to be like those that came.
    void expect(std::size_t bytes);
    // Once, with the last piece.
    IcsFile finish(std::string_view piece);

private:
    class Reader;
    std::unique_ptr<Reader> m_reader;
};

// The whole of it at once.
IcsFile parseIcsFile(std::string_view bytes,
                     const std::function<bool(std::string_view)>& zoneIsKnown);

} // namespace quorvel::icalendar
