#include "freedesktop/text/text_lines.h"

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include <cairo.h>
#include <gtest/gtest.h>

#include "freedesktop/text/pango_text_measurer.h"

namespace quorvel::freedesktop {
namespace {

using platform::CGRect;
using platform::CGRectMake;
using platform::CGSize;
using platform::UIColor;
using platform::UIFont;

std::shared_ptr<TextLines> sharedLines() {
    static const auto lines = std::make_shared<TextLines>();
    return lines;
}

CGSize sizeOf(std::string_view text, double size) {
    return PangoTextMeasurer(sharedLines()).sizeWithFont(text, UIFont::systemFontOfSize(size));
}

// White pixels on black, and where they are.
class Canvas {
public:
    Canvas()
        : m_surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 400, 60))
        , m_context(cairo_create(m_surface)) {}
    ~Canvas() {
        cairo_destroy(m_context);
        cairo_surface_destroy(m_surface);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    void paint(std::string_view text, const CGRect& rect, double size = 14) {
        paint(*sharedLines(), text, rect, size);
    }
    void paint(TextLines& lines, std::string_view text, const CGRect& rect, double size) {
        lines.paint(m_context, text, UIFont::systemFontOfSize(size), UIColor::whiteColor(), rect);
        cairo_surface_flush(m_surface);
    }
    bool isEmpty() const { return right() < 0; }
    int left() const { return edge(true, false); }
    int right() const { return edge(true, true); }
    int top() const { return edge(false, false); }
    int bottom() const { return edge(false, true); }
    bool operator==(const Canvas& other) const {
        for (int y = 0; y < 60; ++y) {
            for (int x = 0; x < 400; ++x) {
                if (alpha(x, y) != other.alpha(x, y))
                    return false;
            }
        }
        return true;
    }

private:
    int alpha(int x, int y) const {
        return cairo_image_surface_get_data(m_surface)[y * 1600 + x * 4 + 3];
    }
    int edge(bool horizontal, bool last) const {
        int found = -1;
        for (int y = 0; y < 60; ++y) {
            for (int x = 0; x < 400; ++x) {
                const int place = horizontal ? x : y;
                if (alpha(x, y) > 40 && (found < 0 || (last ? place > found : place < found)))
                    found = place;
            }
        }
        return found;
    }

    cairo_surface_t* m_surface;
    cairo_t* m_context;
};

TEST(TextMeasuring, NothingHasNoSize) {
    EXPECT_EQ(sizeOf("", 14), CGSize());
    EXPECT_EQ(sizeOf("a", 0), CGSize());
    EXPECT_EQ(sizeOf("a", -3), CGSize());
    EXPECT_EQ(sizeOf("a", std::numeric_limits<double>::quiet_NaN()), CGSize());
}

TEST(TextMeasuring, SizesScaleExactly) {
    const CGSize small = sizeOf("Zahnarzt im Ärztehaus", 14);
    const CGSize large = sizeOf("Zahnarzt im Ärztehaus", 28);
    EXPECT_GT(small.width, 14 * 5);
    EXPECT_NEAR(large.width, 2 * small.width, 1e-9);
    EXPECT_NEAR(large.height, 2 * small.height, 1e-9);
    EXPECT_NE(small.width, std::round(small.width));
}

TEST(TextMeasuring, LineHeightIsThatOfTheFont) {
    const double height = sizeOf("AAAAAAAAAAA", 14).height;
    EXPECT_GT(height, 14);
    EXPECT_LT(height, 21);
    for (const char* text : {"日本語", "مرحبا", "😀", "ไทย", "a\nb", "a\xCC\x81\xCC\x81\xCC\x81"})
        EXPECT_EQ(sizeOf(text, 14).height, height) << text;
}

TEST(TextMeasuring, ALineEndIsASpace) {
    EXPECT_EQ(sizeOf("a\nb", 14), sizeOf("a b", 14));
    EXPECT_EQ(sizeOf("a\tb", 14), sizeOf("a b", 14));
}

TEST(TextScale, EnlargesWhatIsMeasured) {
    TextLines lines;
    const UIFont font = UIFont::systemFontOfSize(14);
    const CGSize plain = lines.size("Lunch", font);
    lines.setTextScale(1.5);
    EXPECT_EQ(lines.size("Lunch", font), lines.size("Lunch", font));
    EXPECT_EQ(lines.size("Lunch", font).width, plain.width * 1.5);
    EXPECT_EQ(lines.size("Lunch", font).height, plain.height * 1.5);
    lines.setTextScale(1);
    EXPECT_EQ(lines.size("Lunch", font), plain);
    EXPECT_EQ(lines.size("Lunch", font), sizeOf("Lunch", 14));
}

TEST(TextScale, IsBounded) {
    TextLines lines;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [wanted, used] :
         {std::pair(0.1, 0.5), std::pair(-1.0, 0.5), std::pair(7.0, 3.0), std::pair(infinity, 3.0),
          std::pair(-infinity, 0.5), std::pair(std::nan(""), 1.0)}) {
        lines.setTextScale(wanted);
        EXPECT_EQ(lines.textScale(), used) << wanted;
    }
    lines.setTextScale(3);
    const CGSize size = lines.size("x", UIFont::systemFontOfSize(infinity));
    EXPECT_TRUE(std::isfinite(size.width) && std::isfinite(size.height));
}

TEST(TextScale, WhatIsMeasuredIsPainted) {
    TextLines lines;
    for (const double scale : {0.5, 0.75, 1.25, 1.5, 2.0}) {
        lines.setTextScale(scale);
        const CGSize size = lines.size("Lunch", UIFont::systemFontOfSize(14));
        Canvas fitting;
        fitting.paint(lines, "Lunch", {{0, 0}, size}, 14);
        Canvas wide;
        wide.paint(lines, "Lunch", {{0, 0}, {400, size.height}}, 14);
        EXPECT_TRUE(fitting == wide) << "cut at " << scale;
        TextLines unscaled;
        Canvas larger;
        larger.paint(unscaled, "Lunch", {{0, 0}, {400, size.height}}, 14 * scale);
        EXPECT_TRUE(wide == larger) << scale;
        Canvas narrow;
        narrow.paint(lines, "Lunch", {{0, 0}, {size.width * 0.7, size.height}}, 14);
        EXPECT_LE(narrow.right(), std::ceil(size.width * 0.7)) << scale;
        EXPECT_FALSE(narrow.isEmpty());
    }
}

TEST(TextMeasuring, HugeSizesStayNumbers) {
    const CGSize huge = sizeOf("AAAAAAAAAAA", 1e300);
    EXPECT_TRUE(std::isfinite(huge.width));
    EXPECT_TRUE(std::isfinite(huge.height));
    EXPECT_GT(huge.width, sizeOf("AAAAAAAAAAA", 5000).width);
    EXPECT_NEAR(sizeOf("AAAAAAAAAAA", 5000).width, 500 * sizeOf("AAAAAAAAAAA", 10).width, 1e-6);
    EXPECT_TRUE(std::isfinite(sizeOf("A", std::numeric_limits<double>::infinity()).width));
}

TEST(TextMeasuring, LongTextsStayWiderThanAnyRow) {
    EXPECT_GT(sizeOf(std::string(1 << 20, 'i'), 14).width, 4000);
    EXPECT_GT(sizeOf(std::string(1 << 20, '\xFF'), 14).width, 4000);
}

TEST(TextMeasuring, TextsThatDifferAboveTheLimitDiffer) {
    const std::string atLimit(16384, 'i');
    EXPECT_EQ(sizeOf(atLimit, 14), sizeOf(atLimit + "i", 14)); // both are cut by characters
    std::string marks = "a";
    while (marks.size() < 16383)
        marks += "\xCC\x81";
    EXPECT_LT(sizeOf(marks, 14).width, sizeOf(marks + "\xCC\x81\xCC\x81", 14).width);
}

TEST(TextMeasuring, FamiliesDiffer) {
    const UIFont plain{"DejaVu Sans", 14};
    const UIFont narrow{"DejaVu Sans Mono", 14};
    EXPECT_NE(sharedLines()->size("iiiiii", plain), sharedLines()->size("iiiiii", narrow));
}

TEST(TextMeasuring, WhatIsForgottenMeasuresTheSame) {
    const CGSize first = sizeOf("row 0", 14);
    for (int i = 1; i < 2000; ++i)
        sizeOf("row " + std::to_string(i), 14);
    EXPECT_EQ(sizeOf("row 0", 14), first);
}

TEST(TextPainting, StandsAtTheLeftEdgeAndInTheMiddle) {
    Canvas canvas;
    canvas.paint("HHHH", CGRectMake(100, 10, 200, 40));
    EXPECT_NEAR(canvas.left(), 101, 1);
    EXPECT_NEAR((canvas.top() + canvas.bottom()) / 2.0, 30, 2.5);
    EXPECT_LT(canvas.right(), 100 + sizeOf("HHHH", 14).width);
}

TEST(TextPainting, RightToLeftTextsStandAtTheLeftEdgeToo) {
    Canvas canvas;
    canvas.paint("مرحبا", CGRectMake(100, 10, 200, 40));
    EXPECT_NEAR(canvas.left(), 101, 2);
}

TEST(TextPainting, IsNotCutAtTheMeasuredWidth) {
    for (const char* text : {"Wocheneinkauf", "a", "مرحبا", "日本語 AV"}) {
        const CGSize size = sizeOf(text, 14);
        Canvas measured;
        Canvas wide;
        measured.paint(text, CGRectMake(0, 10, size.width, size.height));
        wide.paint(text, CGRectMake(0, 10, 400, size.height));
        EXPECT_TRUE(measured == wide) << text;
        EXPECT_FALSE(wide.isEmpty());
    }
}

TEST(TextPainting, IsCutWithAnEllipsis) {
    const std::string text = "A very long title of an event that nobody can read in one row";
    Canvas cut;
    cut.paint(text, CGRectMake(0, 10, 100, 20));
    EXPECT_LT(cut.right(), 100);
    EXPECT_GT(cut.right(), 70);
    Canvas hard;
    hard.paint(text.substr(0, 11), CGRectMake(0, 10, 400, 20));
    EXPECT_FALSE(cut == hard);
}

TEST(TextPainting, NothingLeavesANarrowRectangle) {
    Canvas canvas;
    canvas.paint("WWWWWWW", CGRectMake(0, 0, 3, 60), 40);
    EXPECT_LT(canvas.right(), 3);
    Canvas none;
    none.paint("WWWWWWW", CGRectMake(0, 0, -5, 60));
    none.paint("WWWWWWW", CGRectMake(0, 0, 100, 0));
    none.paint("", CGRectMake(0, 0, 100, 60));
    none.paint("W", CGRectMake(0, 0, 100, 60), 0);
    EXPECT_TRUE(none.isEmpty());
}

TEST(TextPainting, HostileTextsStayInTheirRow) {
    std::string marks = "a";
    for (int i = 0; i < 20000; ++i)
        marks += "\xCC\x81";
    const std::string texts[] = {marks, std::string(1 << 20, 'W'), std::string(1 << 20, '\xFF'),
                                 "one\ntwo\nthree", "\xE2\x80\xAE\xE2\x80\xAE\xE2\x80\xAE"};
    for (const std::string& text : texts) {
        Canvas canvas;
        canvas.paint(text, CGRectMake(0, 20, 100, 20));
        EXPECT_LT(canvas.right(), 100);
    }
    Canvas lines;
    lines.paint("one\ntwo\nthree", CGRectMake(0, 20, 100, 20));
    EXPECT_GE(lines.top(), 20);
    EXPECT_LT(lines.bottom(), 40);
}

// The character for "bone" has a corner on the one side in Japan, on the other in China.
TEST(TextPainting, UsesTheFormsOfTheLocale) {
    const auto painted = [](TextLines& lines) {
        auto canvas = std::make_unique<Canvas>();
        canvas->paint(lines, "\u9AA8", CGRectMake(0, 0, 60, 60), 48);
        return canvas;
    };
    TextLines japanese(std::nullopt, "ja_JP");
    TextLines chinese(std::nullopt, "zh_CN");
    EXPECT_FALSE(*painted(japanese) == *painted(chinese));
    japanese.setLocale("zh_CN");
    EXPECT_TRUE(*painted(japanese) == *painted(chinese));
    EXPECT_EQ(japanese.systemFamily(), chinese.systemFamily());
    TextLines family("DejaVu Serif", "ja_JP");
    family.setLocale("zh_CN");
    EXPECT_EQ(family.systemFamily(), "DejaVu Serif");
}

TEST(TextPainting, HugeSizesAreHarmless) {
    Canvas canvas;
    canvas.paint("Wi", CGRectMake(0, 0, 400, 60), 5000);
    canvas.paint("Wi", CGRectMake(0, 0, 400, 60), 1e9);
    canvas.paint("Wi", CGRectMake(0, 0, 400, 60), 1e300);
    EXPECT_LT(canvas.right(), 400);
}

} // namespace
} // namespace quorvel::freedesktop
