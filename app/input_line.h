// Reads one line and leaves what follows to the next one who reads.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace quorvel::app {

struct InputLine {
    std::string text; // without the line end; empty at the end of the input or after an error
    bool isTooLong = false;
};

// Blocks until the line is complete, longer than that many bytes, or interrupted: `isInterrupted`
// is called when a signal arrives; null: signals do not end the line.
InputLine readInputLine(int descriptor, std::size_t longest,
                        const std::function<bool()>& isInterrupted = nullptr);

} // namespace quorvel::app
