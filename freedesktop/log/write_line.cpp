#include "freedesktop/log/write_line.h"

#include <cerrno>
#include <string_view>

#include <unistd.h>

namespace quorvel::freedesktop {

void writeLine(int descriptor, std::string line) {
    line += '\n';
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t written = ::write(descriptor, rest.data(), rest.size());
        if (written > 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return;
        }
    }
}

} // namespace quorvel::freedesktop
