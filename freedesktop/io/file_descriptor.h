// A descriptor of the kernel's, closed with its owner.
#pragma once

namespace quorvel::freedesktop {

// Several threads may share one: the number does not change before close().
class FileDescriptor {
public:
    // Takes over the number; a negative one means that nothing is open.
    explicit FileDescriptor(int number = -1)
        : m_number(number) {}
    ~FileDescriptor();
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    bool isOpen() const { return m_number >= 0; }
    int get() const { return m_number; }

    // Closes it now, for an owner who wants to know whether everything was written. Returns 0 or
    // the errno.
    int close();

private:
    int m_number;
};

} // namespace quorvel::freedesktop
