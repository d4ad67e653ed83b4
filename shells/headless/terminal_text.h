// Lines on a terminal: measured in columns, cut, set in columns.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::headless {

// How many columns of a terminal a text takes that terminalLine() has made.
std::size_t displayWidth(std::string_view text);

// As much of such a text as fits, with an ellipsis where something is missing.
std::string textCutToWidth(std::string_view text, std::size_t columns);

// One line a row, the cells of a column under each other, two spaces between columns, no spaces at
// a line's end. A column is as wide as its widest cell, but no wider than `widestColumn`; a cell
// that is wider pushes the rest of its own line along, and is cut at `widestCell`. A cell may hold
// any text; terminalLine() decides what is printed.
struct ColumnLimits {
    std::size_t widestColumn = 48;
    std::size_t widestCell = 200;
};
std::string textInColumns(const std::vector<std::vector<std::string>>& rows,
                          const ColumnLimits& limits = {});

} // namespace quorvel::headless
