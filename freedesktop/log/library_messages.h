// The messages that GLib and the libraries on it print by themselves.
#pragma once

namespace quorvel::freedesktop {

// From here on each of them is one line without control characters, as printableMessage() makes
// it; where it goes stays GLib's decision. To be called once, at a program's very start.
void keepLibraryMessagesOnOneLine();

} // namespace quorvel::freedesktop
