#include "freedesktop/calendars/store/calendar_reader.h"

#include <utility>

namespace quorvel::freedesktop::calendars {

CalendarReader::~CalendarReader() {
    // Writing takes as much memory again as what it writes.
    m_latest = nullptr;
    m_search.reset();
    m_snapshots.reset();
    m_index.writePending();
}

void CalendarReader::setSources(std::vector<CalendarSource> sources) {
    m_latest = nullptr;
    m_snapshots->setSources(std::move(sources));
}

void CalendarReader::setIndex(std::unique_ptr<CalendarIndex> index) {
    m_index.setIndex(std::move(index));
}

void CalendarReader::setFileClock(std::function<std::int64_t()> clock) {
    m_snapshots->setFileClock(std::move(clock));
}

std::shared_ptr<const StoreSnapshot> CalendarReader::refresh() {
    m_latest = m_snapshots->refresh();
    return m_latest;
}

std::shared_ptr<const SearchResult> CalendarReader::search(const SearchRequest& request) {
    return m_search->search(request);
}

void CalendarReader::prepareForNextRequest() {
    m_index.writePending();
    if (m_latest) {
        m_snapshots->calendarsOf(m_latest);
    }
    m_snapshots->freeUnused();
}

} // namespace quorvel::freedesktop::calendars
