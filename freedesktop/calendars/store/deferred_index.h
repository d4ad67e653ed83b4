// The index as the reader uses it: entries are found at once, and written when no store waits.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "freedesktop/calendars/index/calendar_index.h"

namespace quorvel::freedesktop::calendars {

// Belongs to the reader's thread.
class DeferredIndex {
public:
    // Null: nothing is found and nothing is stored.
    void setIndex(std::unique_ptr<CalendarIndex> index) { m_index = std::move(index); }
    // A text in memory is not stored, and neither is anything that depends on it.
    void setEnabled(bool isEnabled) { m_isEnabled = isEnabled; }
    bool isUsed() const { return m_index && m_isEnabled; }

    // Absent where the index is not used.
    std::optional<CalendarIndex::Transaction> transaction();
    std::optional<std::string> find(IndexKind kind, const Signature& key);

    // Collects the entry until writePending().
    void storeLater(IndexEntry entry);
    void writePending();

private:
    std::unique_ptr<CalendarIndex> m_index; // may be null
    bool m_isEnabled = true;
    std::vector<IndexEntry> m_pending;
};

} // namespace quorvel::freedesktop::calendars
