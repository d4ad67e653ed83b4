// Stores what is wrong with a calendar in no particular language: the program that reads it may
// have another one than the program that stored it.
#pragma once

#include "base/translatable_text.h"
#include "freedesktop/calendars/index/stored_bytes.h"

namespace quorvel::freedesktop::calendars {

void putMessage(ByteWriter& writer, const TranslatableText& message);
// Values that are nested deeper than any of ours are read as empty texts.
TranslatableText takeMessage(ByteReader& reader);

} // namespace quorvel::freedesktop::calendars
