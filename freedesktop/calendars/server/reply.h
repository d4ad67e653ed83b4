// A value that one thread waits for until a deadline and another delivers.
#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include "freedesktop/calendars/server/data_server.h"

namespace quorvel::freedesktop::eds {

// For two threads: a mutex guards everything.
template <class Value>
class Reply {
public:
    // Once. Absent where the value did not come in time; the wait is abandoned then.
    std::optional<Value> wait(Deadline deadline) {
        std::unique_lock lock(m_mutex);
        m_delivered.wait_until(lock, deadline, [this] { return m_value.has_value(); });
        m_isAbandoned = !m_value;
        return std::move(m_value);
    }

    // False where the wait was abandoned.
    bool deliver(Value value) {
        const std::lock_guard lock(m_mutex);
        if (m_isAbandoned) {
            return false;
        }
        m_value = std::move(value);
        m_delivered.notify_one();
        return true;
    }

    bool isAbandoned() const {
        const std::lock_guard lock(m_mutex);
        return m_isAbandoned;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_delivered;
    std::optional<Value> m_value;
    bool m_isAbandoned = false;
};

} // namespace quorvel::freedesktop::eds
