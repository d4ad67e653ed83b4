// The messages that GLib and the libraries above it print.
#pragma once

namespace quorvel::freedesktop {

// Makes each message one line without control characters, by printableMessage(). GLib still decides
// where it is written. Call it once, at the start of the program.
void printLibraryMessagesOnOneLine();

} // namespace quorvel::freedesktop
