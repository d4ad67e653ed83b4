// Looks for the calendar server on the session's message bus. The library that asks a bus is known
// to the implementations alone.
#pragma once

#include <string>

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::freedesktop::eds {

class SourcesSearch {
public:
    virtual ~SourcesSearch() = default;

    // The bus name of the service that knows the calendars. On any one thread at a time. Blocks
    // until the bus answers or the search is cancelled. From the call on the process survives the
    // end of the bus.
    virtual Result<std::string, TranslatableText> find() = 0;
    // On any thread, and for good: a later search fails at once.
    virtual void cancel() = 0;
};

} // namespace quorvel::freedesktop::eds
