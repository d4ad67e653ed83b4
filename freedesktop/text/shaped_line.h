// One line of text as glyphs in their places. Only for this folder.
#pragma once

#include <string>
#include <vector>

#include "freedesktop/text/pango_handles.h"

namespace quorvel::freedesktop {

// Characters of one font and direction. Glyphs are placed from the line's beginning on.
struct ShapedRun {
    ItemHandle item;
    GlyphsHandle glyphs;
};

// Looks as Pango's own layout, which is asked only where it alone knows the places: it measures
// every font of a line, and for that shapes a sample text in it, which looks up further fonts.
struct ShapedLine {
    std::string text;            // what the runs were made of
    std::vector<ShapedRun> runs; // from left to right
    int width = 0;               // in Pango's units
};

// In the font and the language of the context. Without control characters.
ShapedLine shapedLine(PangoContext* context, std::string text);

// The same with an ellipsis at its end, where it is wider than `width`, in Pango's units.
ShapedLine truncatedLine(PangoContext* context, std::string text, int width);

// From the current point on.
void showLine(cairo_t* context, const ShapedLine& line);

} // namespace quorvel::freedesktop
