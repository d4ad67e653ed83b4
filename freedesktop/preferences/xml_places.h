// Finds the entries of an XML property list that has been parsed without an error.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/preferences/list_places.h"
#include "freedesktop/preferences/xml_parser.h"

namespace quorvel::freedesktop {

// Absent: the root is neither a dictionary nor an array. An empty-element tag (<dict/>) has its
// contents' end behind it.
std::optional<ListPlaces> placesInXml(std::string_view text, XmlEncoding encoding);

// The text with a start tag and an end tag in place of a root that is an empty-element tag.
std::string withOpenRoot(std::string_view text, XmlEncoding encoding);

} // namespace quorvel::freedesktop
