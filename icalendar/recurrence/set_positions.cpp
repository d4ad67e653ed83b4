#include "icalendar/recurrence/set_positions.h"

#include <cstdlib>

namespace quorvel::icalendar {

bool SetPositions::areWithin(std::int64_t size) const {
    return std::any_of(m_positions.begin(), m_positions.end(),
                       [size](int position) { return std::abs(position) <= size; });
}

void SetPositions::findIndexes(std::size_t size) {
    m_size = size;
    m_indexes.clear();
    const auto count = static_cast<std::int64_t>(size);
    for (const int position : m_positions) {
        const std::int64_t index = position > 0 ? position - 1 : count + position;
        if (index >= 0 && index < count) {
            m_indexes.push_back(static_cast<std::size_t>(index));
        }
    }
    std::sort(m_indexes.begin(), m_indexes.end());
    m_indexes.erase(std::unique(m_indexes.begin(), m_indexes.end()), m_indexes.end());
}

} // namespace quorvel::icalendar
