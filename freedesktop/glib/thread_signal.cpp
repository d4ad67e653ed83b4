#include "freedesktop/glib/thread_signal.h"

#include <cstdint>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace quorvel::freedesktop {

ThreadSignal::ThreadSignal(std::function<void()> onSignal)
    : m_onSignal(std::move(onSignal))
    , m_counter(std::make_shared<FileDescriptor>(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)))
    , m_events(*m_counter, [this] { receive(); }) {
    m_events.listen();
}

std::function<void()> ThreadSignal::sender() const {
    return [counter = m_counter] {
        const std::uint64_t one = 1;
        // If the counter is full, a signal is pending already.
        [[maybe_unused]] const ssize_t written = write(counter->get(), &one, sizeof one);
    };
}

void ThreadSignal::receive() {
    std::uint64_t count = 0;
    if (read(m_counter->get(), &count, sizeof count) > 0) {
        const auto onSignal = m_onSignal; // may destroy this object
        onSignal();
    }
}

} // namespace quorvel::freedesktop
