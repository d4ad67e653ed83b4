// The search for the calendar server by GIO.
#pragma once

#include "freedesktop/calendars/server/sources_search.h"

namespace quorvel::freedesktop::eds {

class BusSourcesSearch final : public SourcesSearch {
public:
    BusSourcesSearch();
    ~BusSourcesSearch() override;
    BusSourcesSearch(const BusSourcesSearch&) = delete;
    BusSourcesSearch& operator=(const BusSourcesSearch&) = delete;

    Result<std::string, TranslatableText> find() override;
    void cancel() override;

private:
    void* m_cancellable; // a GCancellable, which guards itself; owned
};

} // namespace quorvel::freedesktop::eds
