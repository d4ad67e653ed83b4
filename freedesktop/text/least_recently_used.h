// A cache of bounded size that evicts the least recently used entry first.
#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>
#include <utility>

namespace quorvel::freedesktop {

// Entries are looked up by a `View`, a cheap value made from a `Key` and valid as long as that key.
// Both the number of entries and the sum of their weights are limited.
template <typename Key, typename View, typename Value, typename Hash>
class LeastRecentlyUsed {
public:
    LeastRecentlyUsed(std::size_t maximumCount, std::size_t maximumWeight)
        : m_maximumCount(maximumCount)
        , m_maximumWeight(maximumWeight) {}
    LeastRecentlyUsed(const LeastRecentlyUsed&) = delete; // the views point into the entries
    LeastRecentlyUsed& operator=(const LeastRecentlyUsed&) = delete;

    // Null: there is no such entry. Valid until the next insert().
    const Value* find(const View& view) {
        const auto found = m_index.find(view);
        if (found == m_index.end())
            return nullptr;
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        return &found->second->value;
    }

    // Only for a key that find() did not find. Never evicts the new entry, whatever its weight.
    const Value& insert(Key key, Value value, std::size_t weight) {
        m_entries.push_front({std::move(key), std::move(value), weight});
        m_index.emplace(View(m_entries.front().key), m_entries.begin());
        m_weight += weight;
        while (m_entries.size() > 1 &&
               (m_entries.size() > m_maximumCount || m_weight > m_maximumWeight))
            evictOldest();
        return m_entries.front().value;
    }

    std::size_t count() const { return m_entries.size(); }

private:
    struct Entry {
        Key key;
        Value value;
        std::size_t weight;
    };

    void evictOldest() {
        m_index.erase(View(m_entries.back().key));
        m_weight -= m_entries.back().weight;
        m_entries.pop_back();
    }

    std::size_t m_maximumCount;
    std::size_t m_maximumWeight;
    std::size_t m_weight = 0;
    std::list<Entry> m_entries; // the newest first
    std::unordered_map<View, typename std::list<Entry>::iterator, Hash> m_index;
};

} // namespace quorvel::freedesktop
