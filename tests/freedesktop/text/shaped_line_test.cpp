// Lines are measured and drawn exactly as Pango's own layout does.
#include "freedesktop/text/shaped_line.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "freedesktop/text/font_context.h"

namespace quorvel::freedesktop {
namespace {

constexpr int pixelWidth = 900;
constexpr int pixelHeight = 120;

const std::vector<std::string>& texts() {
    static const std::vector<std::string> all = {
        "Lunch",
        "Zahnarzt im Ärztehaus",
        "12:30",
        " spaces  ",
        "日本語のレッスン",
        "日本語のレッスン x",
        "x 日本語",
        "\xF0\x9F\x8E\x82 x \xF0\x9F\x8E\x82",
        "Mia's birthday \xF0\x9F\x8E\x82 at home",
        "مرحبا",
        "مرحبا Lunch 12:30 مرحبا",
        "Lunch with שלום 123",
        "office, ﬁre, a\xCC\x81\xCC\x81",
        "ไทย and हिन्दी",
    };
    return all;
}

ObjectHandle<PangoContext> contextOf(const char* locale) {
    ObjectHandle<PangoContext> context = createFontContext(locale);
    pango_context_set_font_description(context.get(), describeFont("sans-serif").get());
    return context;
}

ObjectHandle<PangoLayout> layoutOf(PangoContext* context, const std::string& text) {
    ObjectHandle<PangoLayout> layout(pango_layout_new(context));
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_text(layout.get(), text.c_str(), -1);
    return layout;
}

PangoLayoutLine* lineOf(PangoLayout* layout) {
    return pango_layout_get_line_readonly(layout, 0);
}

int widthOf(PangoLayout* layout) {
    PangoRectangle extents{};
    pango_layout_line_get_extents(lineOf(layout), nullptr, &extents);
    return extents.width;
}

// The bytes of a picture, drawn from a place between the pixels on, enlarged by a crooked factor.
template <class Draw>
std::string pixelsOf(Draw draw) {
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixelWidth, pixelHeight);
    cairo_t* context = cairo_create(surface);
    cairo_move_to(context, 3.3, 77.7);
    cairo_scale(context, 0.8137, 0.8137);
    draw(context);
    cairo_destroy(context);
    cairo_surface_flush(surface);
    const std::size_t size = static_cast<std::size_t>(cairo_image_surface_get_stride(surface)) *
                             static_cast<std::size_t>(pixelHeight);
    std::string pixels(reinterpret_cast<const char*>(cairo_image_surface_get_data(surface)), size);
    cairo_surface_destroy(surface);
    return pixels;
}

std::string pixelsOf(const ShapedLine& line) {
    return pixelsOf([&](cairo_t* context) { showLine(context, line); });
}

std::string pixelsOf(PangoLayout* layout) {
    return pixelsOf(
        [&](cairo_t* context) { pango_cairo_show_layout_line(context, lineOf(layout)); });
}

TEST(ShapedLine, IsAsPangosLayout) {
    for (const char* locale : {"en_GB", "ja_JP", "ar_EG"}) {
        const ObjectHandle<PangoContext> context = contextOf(locale);
        for (const std::string& text : texts()) {
            const ObjectHandle<PangoLayout> layout = layoutOf(context.get(), text);
            const ShapedLine line = shapedLine(context.get(), text);
            EXPECT_EQ(line.width, widthOf(layout.get())) << text;
            EXPECT_TRUE(pixelsOf(line) == pixelsOf(layout.get())) << text;
        }
    }
}

TEST(ShapedLine, IsTruncatedAsPangosLayout) {
    const ObjectHandle<PangoContext> context = contextOf("en_GB");
    for (const std::string& text : texts()) {
        const int width = shapedLine(context.get(), text).width * 2 / 3;
        const ObjectHandle<PangoLayout> layout = layoutOf(context.get(), text);
        pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
        pango_layout_set_width(layout.get(), width);
        const ShapedLine line = truncatedLine(context.get(), text, width);
        EXPECT_EQ(line.width, widthOf(layout.get())) << text;
        EXPECT_TRUE(pixelsOf(line) == pixelsOf(layout.get())) << text;
    }
}

TEST(ShapedLine, DrawsSomething) {
    const ObjectHandle<PangoContext> context = contextOf("en_GB");
    const std::string nothing = pixelsOf(ShapedLine{});
    EXPECT_EQ(nothing.find_first_not_of('\0'), std::string::npos);
    for (const std::string& text : texts()) {
        EXPECT_FALSE(pixelsOf(shapedLine(context.get(), text)) == nothing) << text;
    }
}

TEST(ShapedLine, OfNothingHasNoRuns) {
    const ShapedLine line = shapedLine(contextOf("en_GB").get(), "");
    EXPECT_EQ(line.width, 0);
    EXPECT_TRUE(line.runs.empty());
}

TEST(FontExtents, AreThoseOfPangosMetrics) {
    const ObjectHandle<PangoContext> context = contextOf("en_GB");
    for (const char* family : {"sans-serif", "serif", "monospace", "emoji"}) {
        const ObjectHandle<PangoFont> font(
            pango_context_load_font(context.get(), describeFont(family).get()));
        ASSERT_NE(font, nullptr) << family;
        PangoFontMetrics* metrics = pango_font_get_metrics(font.get(), nullptr);
        const FontExtents extents = extentsOf(font.get());
        EXPECT_EQ(extents.ascent, pango_font_metrics_get_ascent(metrics)) << family;
        EXPECT_EQ(extents.descent, pango_font_metrics_get_descent(metrics)) << family;
        EXPECT_GT(extents.ascent, 0) << family;
        pango_font_metrics_unref(metrics);
    }
}

} // namespace
} // namespace quorvel::freedesktop
