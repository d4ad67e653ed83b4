#include "freedesktop/calendars/store/deferred_index.h"

#include <utility>

namespace quorvel::freedesktop::calendars {

std::optional<CalendarIndex::Transaction> DeferredIndex::transaction() {
    return isUsed() ? std::optional(m_index->beginReading()) : std::nullopt;
}

std::optional<std::string> DeferredIndex::find(IndexKind kind, const Signature& key) {
    auto opened = transaction();
    return opened ? opened->find(kind, key) : std::nullopt;
}

void DeferredIndex::storeLater(IndexEntry entry) {
    if (isUsed()) {
        m_pending.push_back(std::move(entry));
    }
}

void DeferredIndex::writePending() {
    std::vector<IndexEntry> entries = std::exchange(m_pending, {});
    if (m_index && !entries.empty()) {
        m_index->store(std::move(entries));
    }
}

} // namespace quorvel::freedesktop::calendars
