// The encoding of a property list's text.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Whether the first bytes show the encoding: a byte-order mark, or the '<' of an XML list in
// UTF-16.
bool hasDetectableEncoding(std::string_view bytes);

// The text as UTF-8, without a byte-order mark. Bytes without a detectable encoding are taken for
// UTF-8. Invalid bytes and characters become U+FFFD.
std::string decodedText(std::string_view bytes);

// The UTF-8 text in the encoding of `bytes`, with their byte-order mark if they have one.
std::string encodedLike(std::string_view bytes, std::string_view text);

} // namespace quorvel::freedesktop
