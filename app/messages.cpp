#include "app/messages.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <unistd.h>

#include "freedesktop/language/messages.h"
#include "freedesktop/plain_text/terminal_line.h"

namespace quorvel::app {

using freedesktop::translated;

namespace {

// The error is the system's text, such as "No space left on device".
Result<void, std::string> writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return std::string(std::strerror(errno));
        }
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return {};
}

} // namespace

Result<void> print(std::string_view text) {
    if (const auto written = writeAll(STDOUT_FILENO, text); !written) {
        return Error{filled(translated("the output cannot be written ({1})"), {written.error()}),
                     {},
                     translated("send it somewhere else")};
    }
    return {};
}

// A failure to write an error message cannot be reported anywhere.
void printError(const Error& error) {
    static_cast<void>(
        writeAll(STDERR_FILENO, "quorvel: " + freedesktop::terminalLine(message(error)) + '\n'));
}

} // namespace quorvel::app
