#include "freedesktop/preferences/regular_file.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvel::freedesktop {
namespace {

class Descriptor {
public:
    explicit Descriptor(int number)
        : m_number(number) {}
    ~Descriptor() {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }

private:
    int m_number;
};

FileReading failure(std::string problem) {
    return {std::nullopt, std::move(problem), false};
}

FileReading systemFailure(int error) {
    FileReading reading = failure(std::generic_category().message(error));
    reading.missing = error == ENOENT || error == ENOTDIR;
    return reading;
}

} // namespace

FileReading readRegularFile(const std::string& path, std::size_t most) {
    if (path.find('\0') != std::string::npos) {
        return systemFailure(ENOENT);
    }
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.number() < 0) {
        return systemFailure(errno);
    }
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) {
        return systemFailure(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return failure("it is not a regular file");
    }
    if (static_cast<std::size_t>(status.st_size) > most) {
        return failure("it is too large");
    }
    // One byte more tells a file that grows meanwhile from its end.
    std::vector<std::byte> bytes(static_cast<std::size_t>(status.st_size) + 1);
    std::size_t size = 0;
    while (true) {
        const ssize_t count = ::read(file.number(), bytes.data() + size, bytes.size() - size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return systemFailure(errno);
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
        if (size > most) {
            return failure("it is too large");
        }
        if (size == bytes.size()) {
            bytes.resize(size * 2);
        }
    }
    bytes.resize(size);
    return {std::move(bytes), {}, false};
}

} // namespace quorvel::freedesktop
