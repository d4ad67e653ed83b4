// Calls a function from the main loop when a file descriptor is readable.
#pragma once

#include <functional>
#include <memory>

#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop {

// Belongs to the thread that calls listen() and calls on that thread's default main context. The
// call may pause the object, but not destroy it.
class DescriptorEvents {
public:
    // The descriptor must outlive the object. One that is not open has no events.
    DescriptorEvents(const FileDescriptor& descriptor, std::function<void()> onReadable);
    ~DescriptorEvents(); // the function is not called afterwards
    DescriptorEvents(const DescriptorEvents&) = delete;
    DescriptorEvents& operator=(const DescriptorEvents&) = delete;

    void listen();
    void pause();

private:
    struct Source;
    const FileDescriptor& m_descriptor;
    std::function<void()> m_onReadable;
    std::unique_ptr<Source> m_source; // never null
};

} // namespace quorvel::freedesktop
