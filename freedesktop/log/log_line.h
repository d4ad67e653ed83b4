// Formats one line of a log. The message may contain anything.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Escapes control characters ("\n", "\t", "\x1B") and bytes that are not UTF-8 ("\xFF"), so that a
// message stays one line and cannot imitate another. Also escapes the bytes of line ends outside
// ASCII and of characters that change the writing direction ("\xE2\x80\xAE"). Truncates a message
// after 4096 bytes and adds "...". Removes a newline at the end.
std::string printableMessage(std::string_view message);

// "2026-03-10 10:00:00.123 quorvel[4711:1a2b] message" in the machine's local time, without the
// newline.
std::string logLine(std::string_view message);

} // namespace quorvel::freedesktop
