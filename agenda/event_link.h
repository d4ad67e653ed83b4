// The link that opens an occurrence in the stock calendar application.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ns_date.h"
#include "platform/ns_url.h"

namespace quorvel {

// The colons of the stored event's identifier become slashes. The part that names the occurrence
// (from "/RID" on) is cut, since the link names the occurrence by its start.
std::string eventLinkPath(std::string_view eventIdentifier);

// Nothing where the identifier holds a character that no link may hold.
std::optional<platform::NSURL> eventLink(std::string_view eventIdentifier,
                                         platform::NSDate startDate);

} // namespace quorvel
