// Why a calendar file or a folder of calendars cannot be read.
#pragma once

#include "base/translatable_text.h"

namespace quorvel::freedesktop::calendars {

class FileError {
public:
    static FileError ofSystem(int number) { return FileError(number); } // an errno, not 0
    // The events of all files together would take too much memory.
    static FileError noRoom() { return FileError(0); }

    int systemError() const { return m_systemError; } // an errno; 0: there is no room
    bool isNoRoom() const { return m_systemError == 0; }
    // The error stays as long as the file's version does: reading it again would not help.
    bool isLasting() const;
    // For the user.
    TranslatableText message() const;

private:
    explicit FileError(int systemError)
        : m_systemError(systemError) {}
    int m_systemError;
};

} // namespace quorvel::freedesktop::calendars
