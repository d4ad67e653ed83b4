// Lets any thread call a function on the thread of a main loop.
#pragma once

#include <functional>
#include <memory>

#include "freedesktop/glib/descriptor_events.h"
#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop {

// Belongs to the thread that constructs it and calls on that thread's default main context, once
// for all signals since the last call. Other threads use only the kernel's counter.
class ThreadSignal {
public:
    explicit ThreadSignal(std::function<void()> onSignal);
    ThreadSignal(const ThreadSignal&) = delete;
    ThreadSignal& operator=(const ThreadSignal&) = delete;

    // Any thread may call the function. It may outlive the object and then has no effect.
    std::function<void()> sender() const;

private:
    void receive();

    std::function<void()> m_onSignal;
    std::shared_ptr<FileDescriptor> m_counter;
    DescriptorEvents m_events;
};

} // namespace quorvel::freedesktop
