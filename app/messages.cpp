#include "app/messages.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "freedesktop/plain_text/terminal_line.h"

namespace quorvel::app {

namespace {

// Absent, or what went wrong.
std::optional<std::string> writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return std::strerror(errno);
        }
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return std::nullopt;
}

} // namespace

void print(std::string_view text) {
    if (const auto failure = writeAll(STDOUT_FILENO, text)) {
        throw std::runtime_error("the output cannot be written (" + *failure +
                                 "): send it somewhere else");
    }
}

// Nothing can be done where not even this gets through.
void complain(std::string_view message) {
    writeAll(STDERR_FILENO, "quorvel: " + freedesktop::terminalLine(message) + '\n');
}

} // namespace quorvel::app
