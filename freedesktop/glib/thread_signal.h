// Wakes the thread of a main loop from any other thread.
#pragma once

#include <functional>
#include <memory>

#include "freedesktop/glib/descriptor_events.h"
#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop {

// Belongs to the thread that makes it, and calls on that thread's default main context, once for
// all signals sent since the last call. Other threads share the kernel's counter alone.
class ThreadSignal {
public:
    explicit ThreadSignal(std::function<void()> happened);
    ThreadSignal(const ThreadSignal&) = delete;
    ThreadSignal& operator=(const ThreadSignal&) = delete;

    // May be called from any thread and outlive this; it has no effect then.
    std::function<void()> sender() const;

private:
    void receive();

    std::function<void()> m_happened;
    std::shared_ptr<FileDescriptor> m_counter;
    DescriptorEvents m_events;
};

} // namespace quorvel::freedesktop
