// Owning pointers to Pango's objects. Only for this folder.
#pragma once

#include <memory>

#include <pango/pangocairo.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop {

struct FontDescriptionFree {
    void operator()(PangoFontDescription* description) const {
        pango_font_description_free(description);
    }
};
using FontDescriptionHandle = std::unique_ptr<PangoFontDescription, FontDescriptionFree>;

struct ItemFree {
    void operator()(PangoItem* item) const { pango_item_free(item); }
};
using ItemHandle = std::unique_ptr<PangoItem, ItemFree>;

struct GlyphsFree {
    void operator()(PangoGlyphString* glyphs) const { pango_glyph_string_free(glyphs); }
};
using GlyphsHandle = std::unique_ptr<PangoGlyphString, GlyphsFree>;

} // namespace quorvel::freedesktop
