// BYSETPOS (RFC 5545 3.3.10): of the local times of one period those at certain positions.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "icalendar/recurrence/occurrence_collector.h"

namespace quorvel::icalendar {

// For a rule that has positions, which must outlive it.
class SetPositions {
public:
    explicit SetPositions(const std::vector<int>& positions)
        : m_positions(positions) {}

    // Whether one of the positions lies within a period of so many local times.
    bool areWithin(std::int64_t size) const;

    // Offers those local times of a period that stand at the positions; localTimeAt() gives them by
    // their index below size. False: nothing more is wanted.
    template <class LocalTimeAt>
    bool offer(std::size_t size, LocalTimeAt localTimeAt, OccurrenceCollector& collector) {
        if (size != m_size) {
            if (!collector.spend(static_cast<std::int64_t>(m_positions.size()))) {
                return false;
            }
            findIndexes(size);
        }
        return collector.spend(1 + static_cast<std::int64_t>(m_indexes.size()) / timesPerStep) &&
               std::all_of(m_indexes.begin(), m_indexes.end(),
                           [&](std::size_t index) { return collector.offer(localTimeAt(index)); });
    }

private:
    void findIndexes(std::size_t size);

    const std::vector<int>& m_positions;
    std::size_t m_size = 0;             // of the period that the indexes are for
    std::vector<std::size_t> m_indexes; // sorted
};

} // namespace quorvel::icalendar
