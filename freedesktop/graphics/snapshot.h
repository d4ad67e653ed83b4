// A picture of the widget in a file.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "freedesktop/text/text_lines.h"
#include "platform/geometry.h"
#include "platform/graphics_context.h"
#include "platform/ui_color.h"

namespace quorvel::freedesktop {

// What is painted, and how large.
struct Snapshot {
    platform::CGSize size; // points; a side below 1 is 1, an empty agenda still makes a picture
    platform::CGFloat scale = 1;                           // pixels a point
    std::optional<platform::UIColor> backdrop;             // absent: transparent
    std::function<void(platform::GraphicsContext&)> paint; // in points
};

// Writes a .png, .svg or .pdf, as the name's extension says. In a .svg a pixel is a "px", in a .pdf
// 1/72 inch. The same snapshot gives the same bytes. The file is complete or as it was before: it
// is written beside and then put in place. Returns what went wrong, in one line; absent: nothing.
std::optional<std::string> writeSnapshot(const std::string& path, const Snapshot& snapshot,
                                         const std::shared_ptr<TextLines>& lines);

} // namespace quorvel::freedesktop
