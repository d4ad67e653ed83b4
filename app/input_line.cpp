#include "app/input_line.h"

#include <cerrno>

#include <unistd.h>

namespace quorvel::app {

InputLine readInputLine(int descriptor, std::size_t longest,
                        const std::function<bool()>& isInterrupted) {
    InputLine line;
    char c = 0;
    while (line.text.size() <= longest) {
        const ssize_t count = ::read(descriptor, &c, 1); // a larger buffer would take the next line
        if (count < 0 && errno == EINTR && !(isInterrupted && isInterrupted())) {
            continue;
        }
        if (count <= 0 || c == '\n') {
            break;
        }
        line.text += c;
    }
    line.isTooLong = line.text.size() > longest;
    return line;
}

} // namespace quorvel::app
