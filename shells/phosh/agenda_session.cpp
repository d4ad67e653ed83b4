#include "shells/phosh/agenda_session.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "platform/system_log.h"
#include "shells/phosh/idle_memory.h"

namespace quorvel::phosh {

namespace {

std::mutex& partsOfTheProcess() {
    static std::mutex mutex;
    return mutex;
}

} // namespace

// Guarded by its mutex.
class AgendaSession::Exchange {
public:
    // For the session's thread.

    bool isReleased() const {
        const std::lock_guard lock(m_mutex);
        return m_isReleased;
    }
    void lend(AgendaParts* parts) {
        const std::lock_guard lock(m_mutex);
        m_parts = parts;
    }
    void waitForRelease() {
        std::unique_lock lock(m_mutex);
        m_released.wait(lock, [this] { return m_isReleased; });
    }

    // For the shell's thread.

    AgendaParts* parts() const {
        const std::lock_guard lock(m_mutex);
        return m_parts;
    }
    void release() {
        {
            const std::lock_guard lock(m_mutex);
            m_isReleased = true;
        }
        m_released.notify_one();
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_released;
    bool m_isReleased = false;
    AgendaParts* m_parts = nullptr; // owned by the session's thread
};

namespace {

std::unique_ptr<AgendaParts> makeOrLog(const AgendaSession::MakeParts& make,
                                       platform::SystemLog& log) {
    try {
        auto parts = make();
        if (parts) {
            return *std::move(parts);
        }
        log.log("QRV: the agenda cannot be shown: " + message(parts.error()));
    } catch (const std::exception& error) {
        log.log(std::string("QRV: the agenda cannot be shown: ") + error.what());
    }
    return nullptr;
}

// An exception that left the thread would end the shell. What remains here is the log's own, where
// the memory is exhausted.
std::unique_ptr<AgendaParts> makeSafely(const AgendaSession::MakeParts& make,
                                        platform::SystemLog& log) noexcept {
    try {
        return makeOrLog(make, log);
    } catch (...) {
        return nullptr;
    }
}

} // namespace

AgendaSession::AgendaSession(MakeParts make, std::shared_ptr<platform::SystemLog> log,
                             std::function<void()> onReady)
    : m_exchange(std::make_shared<Exchange>())
    , m_ready(std::move(onReady)) {
    const auto run = [exchange = m_exchange, ready = m_ready.sender(), make = std::move(make),
                      log = std::move(log)] {
        const std::lock_guard alone(partsOfTheProcess());
        if (exchange->isReleased()) {
            return;
        }
        {
            const std::unique_ptr<AgendaParts> parts = makeSafely(make, *log);
            exchange->lend(parts.get());
            ready();
            exchange->waitForRelease();
        }
        returnIdleMemory();
    };
    std::thread(run).detach();
}

AgendaSession::~AgendaSession() {
    m_exchange->release();
}

AgendaParts* AgendaSession::parts() const {
    return m_exchange->parts();
}

} // namespace quorvel::phosh
