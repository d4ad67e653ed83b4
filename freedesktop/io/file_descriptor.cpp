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

Result<void, std::error_code> FileDescriptor::close() {
    if (::close(std::exchange(m_number, -1)) != 0) {
        return std::error_code(errno, std::generic_category());
    }
    return {};
}

} // namespace quorvel::freedesktop
