// A part of a calendar's text, quoted in a problem message.
#pragma once

#include <string_view>

#include "base/translatable_text.h"

namespace quorvel::icalendar {

// Valid UTF-8 of at most some 60 bytes of the text, control characters replaced, in quotation
// marks.
TranslatableText quoted(std::string_view text);

} // namespace quorvel::icalendar
