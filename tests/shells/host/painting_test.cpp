#include "shells/host/painting.h"

#include <gtest/gtest.h>

#include <cairo.h>
#include <cstdint>
#include <cstring>
#include <memory>

namespace quorvel::shells {
namespace {

using platform::CGRectMake;
using platform::UIColor;

constexpr UIColor translucentWhite{1, 1, 1, 0.5};

class PaintingTest : public ::testing::Test {
protected:
    // A red surface.
    PaintingTest() {
        cairo_set_source_rgb(m_context.get(), 1, 0, 0);
        cairo_paint(m_context.get());
    }

    // Premultiplied, as 0xAARRGGBB.
    std::uint32_t pixel(int x, int y) const {
        cairo_surface_flush(m_surface.get());
        std::uint32_t value = 0;
        std::memcpy(&value,
                    cairo_image_surface_get_data(m_surface.get()) +
                        y * cairo_image_surface_get_stride(m_surface.get()) + x * 4,
                    sizeof value);
        return value;
    }

    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> m_surface{
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 100, 60), cairo_surface_destroy};
    std::unique_ptr<cairo_t, void (*)(cairo_t*)> m_context{cairo_create(m_surface.get()),
                                                           cairo_destroy};
};

TEST_F(PaintingTest, TheBackdropReplacesTheContent) {
    paintBackdrop(m_context.get(), CGRectMake(0, 0, 100, 60), translucentWhite, true);
    EXPECT_EQ(pixel(50, 30), 0x80808080U);
    EXPECT_EQ(pixel(0, 0), 0x80808080U);
}

TEST_F(PaintingTest, WithoutACompositorTheBackdropIsOpaque) {
    paintBackdrop(m_context.get(), CGRectMake(0, 0, 100, 60), translucentWhite, false);
    EXPECT_EQ(pixel(50, 30), 0xFFFFFFFFU);
    EXPECT_EQ(pixel(99, 59), 0xFFFFFFFFU);
}

TEST_F(PaintingTest, WithoutAColourTheBackdropIsTransparent) {
    paintBackdrop(m_context.get(), CGRectMake(0, 0, 100, 60), std::nullopt, true);
    EXPECT_EQ(pixel(50, 30), 0U);
    paintBackdrop(m_context.get(), CGRectMake(0, 0, 100, 60), std::nullopt, false);
    EXPECT_EQ(pixel(50, 30), 0xFF000000U) << "opaque without a compositor";
}

TEST_F(PaintingTest, TheBackdropStaysInItsRectangle) {
    paintBackdrop(m_context.get(), CGRectMake(10, 20, 80, 30), translucentWhite, true);
    EXPECT_EQ(pixel(10, 20), 0x80808080U);
    EXPECT_EQ(pixel(89, 49), 0x80808080U);
    EXPECT_EQ(pixel(9, 20), 0xFFFF0000U);
    EXPECT_EQ(pixel(10, 19), 0xFFFF0000U);
    EXPECT_EQ(pixel(90, 49), 0xFFFF0000U);
}

TEST_F(PaintingTest, ClearsOnlyTheCorners) {
    clearCorners(m_context.get(), CGRectMake(10, 10, 80, 40), 12);
    for (const int x : {10, 89}) {
        for (const int y : {10, 49}) {
            EXPECT_EQ(pixel(x, y), 0U) << x << ", " << y;
        }
    }
    EXPECT_EQ(pixel(9, 9), 0xFFFF0000U);
    EXPECT_EQ(pixel(14, 14), 0xFFFF0000U) << "inside the arc";
    EXPECT_EQ(pixel(22, 10), 0xFFFF0000U);
    EXPECT_EQ(pixel(10, 22), 0xFFFF0000U);
    EXPECT_EQ(pixel(50, 30), 0xFFFF0000U);
}

TEST_F(PaintingTest, TheCornersOfASmallRectangleMeet) {
    clearCorners(m_context.get(), CGRectMake(10, 10, 10, 10), 12);
    EXPECT_EQ(pixel(10, 10), 0U);
    EXPECT_EQ(pixel(15, 15), 0xFFFF0000U);
    clearCorners(m_context.get(), CGRectMake(50, 30, 0, 0), 12);
    EXPECT_EQ(pixel(50, 30), 0xFFFF0000U);
}

TEST_F(PaintingTest, TheFocusIsAnOutlineInsideTheRow) {
    paintFocus(m_context.get(), CGRectMake(0, 10, 100, 40), {0, 0, 1, 1});
    EXPECT_NE(pixel(50, 12), 0xFFFF0000U);
    EXPECT_NE(pixel(2, 30), 0xFFFF0000U);
    EXPECT_GT(pixel(2, 30) & 0xFFU, 0x40U) << "of the given colour";
    EXPECT_EQ(pixel(50, 30), 0xFFFF0000U);
    EXPECT_EQ(pixel(50, 9), 0xFFFF0000U);
    EXPECT_EQ(pixel(50, 50), 0xFFFF0000U);
    EXPECT_EQ(pixel(2, 12), 0xFFFF0000U) << "rounded";
}

TEST_F(PaintingTest, AnEmptyRowHasNoOutline) {
    paintFocus(m_context.get(), CGRectMake(10, 10, 0, 0), {});
    paintFocus(m_context.get(), CGRectMake(10, 10, 3, 3), {});
    EXPECT_EQ(pixel(10, 10), 0xFFFF0000U);
    EXPECT_EQ(pixel(12, 12), 0xFFFF0000U);
}

} // namespace
} // namespace quorvel::shells
