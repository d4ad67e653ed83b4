#include "freedesktop/text/font_context.h"

#include <fontconfig/fontconfig.h>
#include <hb.h>
#include <pango/pangofc-font.h>

namespace quorvel::freedesktop {

ObjectHandle<PangoContext> createFontContext(const std::string& locale) {
    // Not the thread's own map: a toolkit uses that, perhaps while texts are shaped elsewhere.
    const ObjectHandle<PangoFontMap> fonts(pango_cairo_font_map_new());
    ObjectHandle<PangoContext> context(pango_font_map_create_context(fonts.get()));
    // Neither the glyphs nor the distances between them follow a pixel grid: a text twice as large
    // is exactly twice as wide.
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    pango_cairo_context_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    const std::string language = locale.substr(0, locale.find_first_of(".@"));
    if (!language.empty())
        pango_context_set_language(context.get(), pango_language_from_string(language.c_str()));
    return context;
}

FontDescriptionHandle describeFont(const std::string& family) {
    FontDescriptionHandle description(pango_font_description_new());
    pango_font_description_set_family(description.get(), family.c_str());
    pango_font_description_set_absolute_size(description.get(), shapedSize * PANGO_SCALE);
    return description;
}

namespace {

// A font of bitmaps is stretched to its size.
double stretchOf(PangoFont* font) {
    FcMatrix* matrix = nullptr;
    return FcPatternGetMatrix(pango_fc_font_get_pattern(PANGO_FC_FONT(font)), FC_MATRIX, 0,
                              &matrix) == FcResultMatch
               ? matrix->yy
               : 1;
}

} // namespace

FontExtents extentsOf(PangoFont* font) {
    hb_font_extents_t extents{};
    hb_font_get_extents_for_direction(pango_font_get_hb_font(font), HB_DIRECTION_LTR, &extents);
    const double stretch = stretchOf(font);
    return {static_cast<int>(extents.ascender * stretch),
            static_cast<int>(-extents.descender * stretch)};
}

} // namespace quorvel::freedesktop
