// One line of a log, from a message that may hold anything.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Control characters are written as "\n", "\t" or "\x1B", bytes that are no UTF-8 as "\xFF", so
// that a message stays one line and cannot pretend to be another. Line ends beyond ASCII and what
// turns the writing direction are written as the bytes that they have, "\xE2\x80\xAE". Beyond 4096
// bytes it is cut and ends in "...". A newline at the very end is dropped.
std::string printableMessage(std::string_view message);

// "2026-03-10 10:00:00.123 quorvel[4711:1a2b] message" in the machine's local time, without the
// newline.
std::string logLine(std::string_view message);

} // namespace quorvel::freedesktop
