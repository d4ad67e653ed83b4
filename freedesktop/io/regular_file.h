// Reads regular files, within bounds and without waiting for a pipe or a device.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/io/file_version.h"

namespace quorvel::freedesktop {

struct ReadResult {
    std::size_t size = 0; // bytes; fewer than asked for only at the file's end or after an error
    int error = 0;        // an errno; 0: none
};

// A regular file that is open for reading. Opening does not wait: pipes and devices are refused,
// and a terminal does not become the controlling terminal of the process.
class RegularFile {
public:
    explicit RegularFile(const std::string& path);

    bool isOpen() const { return m_error == 0; }
    int error() const { return m_error; } // an errno; 0: it is open; EINVAL: it is not regular
    bool isOtherKind() const { return m_isOtherKind; } // a folder, a pipe, a device

    // The version and size at the time of opening. Only for a file that is open.
    const FileVersion& version() const { return m_version; }
    std::size_t size() const { return static_cast<std::size_t>(m_version.size); }
    // Whether the file still has that version.
    bool isUnchanged() const;

    // Continues where the last call ended. Repeats a system call that was interrupted.
    ReadResult read(char* place, std::size_t size) const;
    void rewind() const; // to the beginning of the file

private:
    FileDescriptor m_descriptor;
    FileVersion m_version;
    int m_error = 0;
    bool m_isOtherKind = false;
};

// Reads all bytes of a regular file, even if it grows meanwhile. Absent if there is no file at the
// path; a path with a null character names no file. Fails with an Error that has only `what` if the
// file cannot be read, is not regular or has more than `most` bytes.
Result<std::optional<std::vector<std::byte>>> readRegularFile(const std::string& path,
                                                              std::size_t most);

} // namespace quorvel::freedesktop
