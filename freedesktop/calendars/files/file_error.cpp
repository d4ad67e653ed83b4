#include "freedesktop/calendars/files/file_error.h"

#include <cerrno>

#include "freedesktop/io/system_error_text.h"

namespace quorvel::freedesktop::calendars {

bool FileError::isLasting() const {
    return isNoRoom() || m_systemError == EACCES || m_systemError == EFBIG;
}

TranslatableText FileError::message() const {
    if (isNoRoom()) {
        return translatable("it is left out: there are more events than fit into memory");
    }
    return {translatable("it cannot be read: {1}"), {systemErrorText(m_systemError)}};
}

} // namespace quorvel::freedesktop::calendars
