// XML property lists, parsed by expat.
#pragma once

#include <string_view>

#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {

// `text` is UTF-8.
bool looksLikeXml(std::string_view text);

// `text` is the list as UTF-8. `bytes` is the list as it stands in the file: it is parsed instead
// where its XML declaration names an encoding other than UTF-8. `bytes` is empty where a byte-order
// mark has told the encoding, which then counts for more than the declaration.
//
// What follows the root is ignored, and so are attributes, comments and a document type. Outside
// entities are never read and declared ones never expanded: a reference to one is a problem.
PropertyListReading readXmlPropertyList(std::string_view text, std::string_view bytes);

} // namespace quorvel::freedesktop
