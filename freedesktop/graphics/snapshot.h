// Writes a picture of the widget to a file.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/result.h"
#include "freedesktop/text/text_lines.h"
#include "platform/geometry.h"
#include "platform/graphics_context.h"
#include "platform/ui_color.h"

namespace quorvel::freedesktop {

// The content and size of the picture.
struct Snapshot {
    platform::CGSize size;                                 // points; a side below 1 counts as 1
    platform::CGFloat scale = 1;                           // pixels per point
    std::optional<platform::UIColor> backdrop;             // absent: transparent
    std::function<void(platform::GraphicsContext&)> paint; // in points
};

// Whether a file with that name could hold the picture: the sides of a .png are shorter than those
// of the other formats.
bool fitsInto(const std::string& path, const Snapshot& snapshot);

// Writes a .png, .svg or .pdf, depending on the extension of the name. A pixel is a "px" in a .svg
// and 1/72 inch in a .pdf. The same snapshot gives the same bytes. Replaces an existing file only
// after the new one is complete. The error has only `what`, one line.
Result<void> writeSnapshot(const std::string& path, const Snapshot& snapshot,
                           const std::shared_ptr<TextLines>& lines);

} // namespace quorvel::freedesktop
