// Tells the main loop's thread of what has happened on another.
#pragma once

#include <functional>
#include <memory>

#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/session/descriptor_events.h"

namespace quorvel::freedesktop {

// Calls on the default main context of the thread that makes this, once for all that was sent since
// the last call.
class ThreadSignal {
public:
    explicit ThreadSignal(std::function<void()> happened);
    ThreadSignal(const ThreadSignal&) = delete;
    ThreadSignal& operator=(const ThreadSignal&) = delete;

    // To be called from any thread; may outlive this, and does nothing then.
    std::function<void()> sender() const;

private:
    void receive();

    std::function<void()> m_happened;
    std::shared_ptr<FileDescriptor> m_counter;
    DescriptorEvents m_events;
};

} // namespace quorvel::freedesktop
