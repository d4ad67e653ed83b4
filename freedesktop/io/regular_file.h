// Reading a regular file within bounds, whatever lies at its path.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/io/file_version.h"

namespace quorvel::freedesktop {

struct ReadResult {
    std::size_t size = 0; // bytes; fewer than asked for only at the file's end or after an error
    int error = 0;        // an errno; 0: none
};

// A regular file that is open for reading. Opening never waits: a pipe or a device is refused, and
// a terminal does not become the process's own.
class RegularFile {
public:
    explicit RegularFile(const std::string& path);

    bool isOpen() const { return m_error == 0; }
    int error() const { return m_error; } // an errno; 0: it is open; EINVAL: it is not regular
    bool isOtherKind() const { return m_isOtherKind; } // a folder, a pipe, a device

    // As it was opened; of one that is open.
    const FileVersion& version() const { return m_version; }
    std::size_t size() const { return static_cast<std::size_t>(m_version.size); }
    // Whether the version is the same now.
    bool isUnchanged() const;

    // Reads from where the last call ended; an interrupted system call is repeated.
    ReadResult read(char* place, std::size_t size) const;
    void rewind() const; // to the file's beginning

private:
    FileDescriptor m_descriptor;
    FileVersion m_version;
    int m_error = 0;
    bool m_isOtherKind = false;
};

struct FileContents {
    std::optional<std::vector<std::byte>> bytes; // absent: `problem` says why
    std::string problem;
    bool missing = false; // there is no file at the path
};

// All bytes of a regular file, also of one that grows meanwhile; a file of more than `most` bytes
// is refused. A path with a null character in it names no file.
FileContents readRegularFile(const std::string& path, std::size_t most);

} // namespace quorvel::freedesktop
