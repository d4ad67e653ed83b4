// A value that one thread waits for and another delivers, or delivers too late.
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include "freedesktop/calendars/server/data_server.h"

namespace quorvel::freedesktop::eds {

// For two threads: a mutex guards all of it.
template <class Value>
class Reply {
public:
    // Once. Absent where it did not come in time; it is given up then.
    std::optional<Value> wait(Deadline deadline) {
        std::unique_lock lock(m_mutex);
        m_delivered.wait_until(lock, deadline, [this] { return m_value.has_value(); });
        m_isGivenUp = !m_value;
        return std::move(m_value);
    }

    // False where it has been given up.
    bool deliver(Value value) {
        const std::lock_guard lock(m_mutex);
        if (m_isGivenUp) {
            return false;
        }
        m_value = std::move(value);
        m_delivered.notify_one();
        return true;
    }

    bool isGivenUp() const {
        const std::lock_guard lock(m_mutex);
        return m_isGivenUp;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_delivered;
    std::optional<Value> m_value;
    bool m_isGivenUp = false;
};

} // namespace quorvel::freedesktop::eds
