#include "freedesktop/text/shaped_line.h"

#include <memory>
#include <utility>

#include <hb.h>

namespace quorvel::freedesktop {

namespace {

// The function has no successor, and is the one that Pango's layout uses.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS
PangoDirection directionOf(PangoContext* context, const std::string& text) {
    const PangoDirection direction =
        pango_find_base_dir(text.data(), static_cast<int>(text.size()));
    return direction == PANGO_DIRECTION_NEUTRAL ? pango_context_get_base_dir(context) : direction;
}
G_GNUC_END_IGNORE_DEPRECATIONS

GlyphsHandle shapedGlyphs(const std::string& text, PangoItem* item) {
    GlyphsHandle glyphs(pango_glyph_string_new());
    pango_shape_item(item, text.data(), static_cast<int>(text.size()), nullptr, glyphs.get(),
                     PANGO_SHAPE_NONE);
    return glyphs;
}

bool hasSeveralFonts(const GList* items) {
    const auto fontOf = [](const GList* at) {
        return static_cast<const PangoItem*>(at->data)->analysis.font;
    };
    for (const GList* next = items; next != nullptr; next = next->next) {
        if (fontOf(next) != fontOf(items)) {
            return true;
        }
    }
    return false;
}

// Others hang, or stand on the bottom of their square.
bool isOnBaseline(const PangoItem* item) {
    switch (item->analysis.script) {
    case G_UNICODE_SCRIPT_COMMON:
    case G_UNICODE_SCRIPT_LATIN:
    case G_UNICODE_SCRIPT_GREEK:
    case G_UNICODE_SCRIPT_CYRILLIC:
    case G_UNICODE_SCRIPT_ARABIC:
    case G_UNICODE_SCRIPT_HEBREW:
        return true;
    default:
        return false;
    }
}

bool hasTableOfBaselines(const PangoItem* item) {
    hb_face_t* const face = hb_font_get_face(pango_font_get_hb_font(item->analysis.font));
    hb_blob_t* const table = hb_face_reference_table(face, HB_TAG('B', 'A', 'S', 'E'));
    const bool hasTable = hb_blob_get_length(table) > 0;
    hb_blob_destroy(table);
    return hasTable;
}

// Pango's layout moves the fonts of a line up or down, to the baseline of the first one's script.
bool areFontsMoved(const GList* items) {
    if (!hasSeveralFonts(items)) {
        return false;
    }
    bool areMoved = !isOnBaseline(static_cast<const PangoItem*>(items->data));
    for (const GList* next = items; !areMoved && next != nullptr; next = next->next) {
        areMoved = hasTableOfBaselines(static_cast<const PangoItem*>(next->data));
    }
    return areMoved;
}

// A run begins at a whole unit behind the one before, whatever the drawing library rounds a
// position to.
void append(ShapedLine& line, ItemHandle item, GlyphsHandle glyphs) {
    const int width = pango_glyph_string_get_width(glyphs.get());
    for (int i = 0; i < glyphs->num_glyphs; ++i) {
        glyphs->glyphs[i].geometry.x_offset += line.width;
    }
    line.runs.push_back({std::move(item), std::move(glyphs)});
    line.width += width;
}

struct ItemsFree {
    void operator()(GList* items) const {
        g_list_free_full(items,
                         [](gpointer item) { pango_item_free(static_cast<PangoItem*>(item)); });
    }
};
using ItemsHandle = std::unique_ptr<GList, ItemsFree>;

// In logical order.
ItemsHandle itemsOf(PangoContext* context, const std::string& text) {
    return ItemsHandle(pango_itemize_with_base_dir(context, directionOf(context, text), text.data(),
                                                   0, static_cast<int>(text.size()), nullptr,
                                                   nullptr));
}

ObjectHandle<PangoLayout> layoutOf(PangoContext* context, const std::string& text) {
    ObjectHandle<PangoLayout> layout(pango_layout_new(context));
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    return layout;
}

GlyphsHandle placedGlyphs(const PangoGlyphItem* run) {
    GlyphsHandle glyphs(pango_glyph_string_copy(run->glyphs));
    for (int i = 0; i < glyphs->num_glyphs; ++i) {
        glyphs->glyphs[i].geometry.y_offset -= run->y_offset;
    }
    return glyphs;
}

ShapedLine laidOutLine(PangoLayout* layout, std::string text) {
    ShapedLine line{std::move(text), {}};
    const PangoLayoutLine* const laidOut = pango_layout_get_line_readonly(layout, 0);
    for (const GSList* next = laidOut->runs; next != nullptr; next = next->next) {
        const auto* const run = static_cast<const PangoGlyphItem*>(next->data);
        append(line, ItemHandle(pango_item_copy(run->item)), placedGlyphs(run));
    }
    return line;
}

// The items, which the line takes over, in the order in which they are seen.
ShapedLine lineOf(ItemsHandle items, std::string text) {
    ShapedLine line{std::move(text), {}};
    GList* const seen = pango_reorder_items(items.get());
    g_list_free(items.release());
    for (const GList* next = seen; next != nullptr; next = next->next) {
        ItemHandle item(static_cast<PangoItem*>(next->data));
        GlyphsHandle glyphs = shapedGlyphs(line.text, item.get());
        append(line, std::move(item), std::move(glyphs));
    }
    g_list_free(seen);
    return line;
}

} // namespace

ShapedLine shapedLine(PangoContext* context, std::string text) {
    ItemsHandle items = itemsOf(context, text);
    if (!areFontsMoved(items.get())) {
        return lineOf(std::move(items), std::move(text));
    }
    const ObjectHandle<PangoLayout> layout = layoutOf(context, text);
    return laidOutLine(layout.get(), std::move(text));
}

ShapedLine truncatedLine(PangoContext* context, std::string text, int width) {
    const ObjectHandle<PangoLayout> layout = layoutOf(context, text);
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    pango_layout_set_width(layout.get(), width);
    return laidOutLine(layout.get(), std::move(text));
}

void showLine(cairo_t* context, const ShapedLine& line) {
    for (const ShapedRun& run : line.runs) {
        PangoGlyphItem shown{};
        shown.item = run.item.get();
        shown.glyphs = run.glyphs.get();
        pango_cairo_show_glyph_item(context, line.text.c_str(), &shown);
    }
}

} // namespace quorvel::freedesktop
