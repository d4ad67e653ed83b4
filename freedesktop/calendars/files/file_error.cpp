#include "freedesktop/calendars/files/file_error.h"

#include <cerrno>
#include <system_error>

namespace quorvel::freedesktop::calendars {

bool FileError::isLasting() const {
    return isNoRoom() || m_systemError == EACCES || m_systemError == EFBIG;
}

std::string FileError::message() const {
    return isNoRoom() ? "it is left out: there are more events than fit into memory"
                      : "it cannot be read: " + std::generic_category().message(m_systemError);
}

} // namespace quorvel::freedesktop::calendars
