// The values that were found or added last, of which the next one to be found is nearly always one.
#pragma once

#include <array>
#include <cstddef>

namespace quorvel::icalendar {

template <class Value>
class LatestFew {
public:
    // Null: none is. Values that were never added are as a new Value is.
    template <class Predicate>
    const Value* find(const Predicate& isIt) {
        for (std::size_t i = 0; i < m_values.size(); ++i) {
            const std::size_t place = (m_latest + i) % m_values.size();
            if (isIt(m_values[place])) {
                m_latest = place;
                return &m_values[place];
            }
        }
        return nullptr;
    }
    // The value that takes the place of another one.
    Value& add() {
        m_latest = (m_latest + 1) % m_values.size();
        return m_values[m_latest];
    }
    const Value& latest() const { return m_values[m_latest]; }

private:
    std::array<Value, 4> m_values;
    std::size_t m_latest = 0; // the one that was found or added last
};

} // namespace quorvel::icalendar
