// Texts from strangers on a terminal: made harmless, measured in columns, set in columns.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel::headless {

// Valid UTF-8 on one line without anything that a terminal acts upon: white space becomes a
// space, other control characters and damaged bytes U+FFFD; what turns the writing direction goes.
std::string harmlessText(std::string_view text);

// How many columns of a terminal a harmless text takes.
std::size_t displayWidth(std::string_view text);

// As much of a harmless text as fits, with an ellipsis where something is missing.
std::string textCutToWidth(std::string_view text, std::size_t columns);

// One line a row, the cells of a column under each other, two spaces between columns, no spaces at
// a line's end. A column is as wide as its widest cell, but no wider than `widestColumn`; a cell
// that is wider pushes the rest of its own line along, and is cut at `widestCell`.
struct ColumnLimits {
    std::size_t widestColumn = 48;
    std::size_t widestCell = 200;
};
std::string textInColumns(const std::vector<std::vector<std::string>>& rows,
                          const ColumnLimits& limits = {});

} // namespace quorvel::headless
