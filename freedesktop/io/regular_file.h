// Reads regular files, within bounds and without waiting for a pipe or a device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "base/result.h"
#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/io/file_version.h"

namespace quorvel::freedesktop {

// A regular file that is open for reading.
class RegularFile {
public:
    // Opening does not wait: pipes and devices are refused, and a terminal does not become the
    // controlling terminal of the process. The error is an errno; EINVAL for what is no regular
    // file.
    static Result<RegularFile, std::error_code> open(const std::string& path);

    // The version and size at the time of opening.
    const FileVersion& version() const { return m_version; }
    // May be more than the memory of a 32-bit process holds.
    std::uint64_t size() const { return static_cast<std::uint64_t>(m_version.size); }
    // Whether the file still has that version.
    bool isUnchanged() const;

    // Returns the number of bytes, which is smaller than `size` only at the end of the file.
    // Continues where the last call ended, and repeats a system call that was interrupted. The
    // error is an errno.
    Result<std::size_t, std::error_code> read(char* place, std::size_t size) const;
    void rewind() const { skipTo(0); } // to the beginning of the file
    void skipTo(std::size_t place) const;

private:
    RegularFile(FileDescriptor descriptor, const FileVersion& version)
        : m_descriptor(std::move(descriptor))
        , m_version(version) {}

    FileDescriptor m_descriptor;
    FileVersion m_version;
};

// Reads all bytes of a regular file, even if it grows meanwhile. Absent if there is no file at the
// path; a path with a null character names no file. Fails with an Error that has only `what` if the
// file cannot be read, is not regular or has more than `most` bytes.
Result<std::optional<std::vector<std::byte>>> readRegularFile(const std::string& path,
                                                              std::size_t most);

} // namespace quorvel::freedesktop
