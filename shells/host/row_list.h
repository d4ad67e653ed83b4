// The rows of the agenda as the keyboard and screen readers use them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/geometry.h"

namespace quorvel::shells {

// Rows count from 0. A row that does not exist has an empty name, no action and an empty frame.
class RowList {
public:
    virtual ~RowList() = default;
    virtual std::size_t rowCount() const = 0;
    virtual std::string rowName(std::size_t row) const = 0; // "Lunch, Café Sol, Thu, 12:30"
    virtual bool rowHasAction(std::size_t row) const = 0;
    // Has the effect of pulling the row. False where the row has no action or cannot be pulled.
    virtual bool runRowAction(std::size_t row) = 0;
    // Points, from the top left corner of the area that shows the rows; may be outside the area.
    virtual platform::CGRect rowFrame(std::size_t row) const = 0;
    virtual std::optional<std::size_t> focusedRow() const = 0;
    // Moves the focus to the row and scrolls to it. False where the row does not exist.
    virtual bool focusRow(std::size_t row) = 0;
};

} // namespace quorvel::shells
