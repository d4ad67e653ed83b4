// Owns a file descriptor and closes it.
#pragma once

#include <system_error>
#include <utility>

#include "base/result.h"

namespace quorvel::freedesktop {

// Threads may share one, since the number does not change before close().
class FileDescriptor {
public:
    // Takes over the number; a negative one means that nothing is open.
    explicit FileDescriptor(int number = -1)
        : m_number(number) {}
    ~FileDescriptor();
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&&) = delete;

    bool isOpen() const { return m_number >= 0; }
    int get() const { return m_number; }

    // Closes the descriptor now. An error means that not everything was written.
    Result<void, std::error_code> close();

private:
    int m_number;
};

} // namespace quorvel::freedesktop
