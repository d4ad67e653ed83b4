// Converts between the data server's values and the platform's.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "freedesktop/calendars/server/data_server.h"
#include "platform/calendar_store.h"
#include "platform/ui_color.h"

namespace quorvel::freedesktop::eds {

// The server's identifier, with the characters that the platform's may not contain written as
// "%3A". Different identifiers stay different.
std::string calendarIdentifier(std::string_view serverIdentifier);

// Reads a colour as calendar files write it, or as "#RRRRGGGGBBBB". Absent where the text is
// neither.
std::optional<platform::UIColor> serverColour(std::string_view text);

std::shared_ptr<const platform::EKCalendar> makeCalendar(const ServerCalendar& calendar);

// The predicate's range in whole seconds, its end rounded up and limited to the longest range of a
// search. Absent where the range is empty.
std::optional<SearchedRange> searchedRange(const platform::EKEventPredicate& predicate);

} // namespace quorvel::freedesktop::eds
