// Measures and truncates text in columns of a terminal, and aligns it as a table.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::headless {

// The columns of a terminal that the text occupies. It contains no control characters:
// terminalLine() has removed them.
std::size_t displayWidth(std::string_view text);

// The text, which contains no control characters, truncated to that width; an ellipsis marks the
// end of a truncated text.
std::string truncatedToWidth(std::string_view text, std::size_t columns);

// In columns of the terminal.
struct ColumnLimits {
    std::size_t widestColumn = 48; // a wider cell moves the rest of its own line to the right
    std::size_t widestCell = 200;  // a wider cell is truncated
};

// One line for each row, with two spaces between columns and no spaces at the end of a line. A
// column is as wide as its widest cell within the limits. A cell may contain any text: control
// characters are replaced.
std::string textInColumns(const std::vector<std::vector<std::string>>& rows,
                          const ColumnLimits& limits = {});

} // namespace quorvel::headless
