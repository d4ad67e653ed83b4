// Events of a kernel descriptor, delivered by the main loop.
#pragma once

#include <functional>
#include <memory>

#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop {

// Calls whenever the descriptor is readable. Belongs to the thread that listens, and calls on that
// thread's default main context. The call may pause this, but not destroy it.
class DescriptorEvents {
public:
    // The descriptor outlives this; one that is not open has no events.
    DescriptorEvents(const FileDescriptor& descriptor, std::function<void()> readable);
    ~DescriptorEvents(); // nothing is called afterwards
    DescriptorEvents(const DescriptorEvents&) = delete;
    DescriptorEvents& operator=(const DescriptorEvents&) = delete;

    void listen();
    void pause();

private:
    struct Source;
    const FileDescriptor& m_descriptor;
    std::function<void()> m_readable;
    std::unique_ptr<Source> m_source; // never null
};

} // namespace quorvel::freedesktop
