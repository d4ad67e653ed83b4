#include "freedesktop/io/file_descriptor.h"

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace quorvel::freedesktop {

FileDescriptor::~FileDescriptor() {
    if (isOpen()) {
        ::close(m_number);
    }
}

int FileDescriptor::close() {
    return ::close(std::exchange(m_number, -1)) == 0 ? 0 : errno;
}

} // namespace quorvel::freedesktop
