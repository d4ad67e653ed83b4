// The bytes of a regular file, up to a bound.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quorvel::freedesktop {

struct FileReading {
    std::optional<std::vector<std::byte>> bytes;
    std::string problem;
    bool missing = false;
};

// Never waits: a pipe or a device is refused.
FileReading readRegularFile(const std::string& path, std::size_t most);

} // namespace quorvel::freedesktop
