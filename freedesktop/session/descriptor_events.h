// What the kernel tells through a descriptor, heard from the main loop.
#pragma once

#include <functional>
#include <memory>

#include "freedesktop/io/file_descriptor.h"

namespace quorvel::freedesktop {

// Calls whenever there is something to be read, on the default main context of the thread that
// listens. The call does not end the object, but may pause it.
class DescriptorEvents {
public:
    // The descriptor outlives this; one that is not open tells nothing.
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
