// The rows as those see them who do not use a pointer: the keyboard and the screen reader.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/geometry.h"

namespace quorvel::window {

// Rows count from 0. A row that is not there has an empty name, no action and an empty frame.
class RowList {
public:
    virtual ~RowList() = default;
    virtual std::size_t rowCount() const = 0;
    virtual std::string rowName(std::size_t row) const = 0; // "Lunch, Café Sol, Thu, 12:30"
    virtual bool rowHasAction(std::size_t row) const = 0;
    // What a pull of the row does. False where nothing could be done.
    virtual bool runRowAction(std::size_t row) = 0;
    // Points in the area that shows the rows, whose origin is its top left corner; may lie outside.
    virtual platform::CGRect rowFrame(std::size_t row) const = 0;
    virtual std::optional<std::size_t> focusedRow() const = 0;
    // Moves the focus to the row and brings it into sight. False where the row is not there.
    virtual bool focusRow(std::size_t row) = 0;
};

} // namespace quorvel::window
