// Pango contexts and font families. Only for this folder.
#pragma once

#include <optional>
#include <string>

#include "freedesktop/text/pango_handles.h"

namespace quorvel::freedesktop {

// The size in points at which every text is shaped; it is scaled afterwards. Looking up a family at
// another size takes 2 ms, and the shape does not depend on the size.
inline constexpr double shapedSize = 64;

// Uses the font map of the process. An empty `locale` means the environment's.
ObjectHandle<PangoContext> createFontContext(const std::string& locale);

FontDescriptionHandle describeFont(const std::string& family);

// How far a font reaches above and below its line, in Pango's units. What Pango calls a font's
// metrics says the same, but shapes a sample text to know widths too.
struct FontExtents {
    int ascent = 0;
    int descent = 0;
};
FontExtents extentsOf(PangoFont* font);

// The requested family, unchecked; else the desktop's interface font if a desktop session runs and
// the font is installed; else the first installed of Inter, Cantarell, Noto Sans and DejaVu Sans;
// else "sans-serif".
std::string systemFontFamily(PangoContext* context, const std::optional<std::string>& requested);

} // namespace quorvel::freedesktop
