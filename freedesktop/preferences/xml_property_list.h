// Parses XML property lists with expat.
#pragma once

#include <string_view>

#include "base/result.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// `text` is UTF-8.
bool looksLikeXml(std::string_view text);

// Whether the XML declaration names an encoding other than UTF-8.
bool namesOtherEncoding(std::string_view text);

// `text` is the list as UTF-8. `bytes` are the original bytes of the file: they are parsed instead
// if the XML declaration names an encoding other than UTF-8. `bytes` is empty if a byte-order mark
// shows the encoding, because the mark overrides the declaration.
//
// Ignores attributes, comments, a document type, and everything after the root. Never reads
// external entities and never expands declared ones: a reference to an entity is an error.
Result<platform::PropertyListValue> parseXmlPropertyList(std::string_view text,
                                                         std::string_view bytes);

} // namespace quorvel::freedesktop
