// Whether the session's message bus has a calendar server, or could start one.
#pragma once

#include <string>

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::freedesktop::eds {

// Fails where there cannot be a calendar server; else the bus has to be asked.
Result<void, TranslatableText> checkDataServer();

// Cancels a search from any thread.
class SearchCancellation {
public:
    SearchCancellation();
    ~SearchCancellation();
    SearchCancellation(const SearchCancellation&) = delete;
    SearchCancellation& operator=(const SearchCancellation&) = delete;

    void cancel();

private:
    friend Result<std::string, TranslatableText> findSourcesService(SearchCancellation&);
    void* m_cancellable; // a GCancellable, which guards itself; owned
};

// The bus name of the service that knows the calendars. Blocks until the bus answers or the search
// is cancelled. From the call on the process survives the end of the bus.
Result<std::string, TranslatableText> findSourcesService(SearchCancellation& cancellation);

} // namespace quorvel::freedesktop::eds
