// What the tests of painting share: a screen, contexts over it, and a look at single pixels.
#pragma once

#include <cstdint>
#include <memory>

#include <cairo.h>
#include <gtest/gtest.h>

#include "freedesktop/graphics/cairo_graphics_contexts.h"
#include "freedesktop/graphics/cairo_pixels.h"
#include "tests/freedesktop/io/folder_testing.h"

namespace quorvel::freedesktop {

class FixedScreen final : public platform::Screen {
public:
    explicit FixedScreen(platform::CGFloat scale)
        : m_scale(scale) {}
    platform::CGFloat scale() const override { return m_scale; }

private:
    platform::CGFloat m_scale;
};

inline std::shared_ptr<TextLines> sharedLines() {
    static const auto lines = std::make_shared<TextLines>();
    return lines;
}

inline std::unique_ptr<platform::ImageContext> begin(double width, double height, double scale = 1,
                                                     bool opaque = false) {
    const FixedScreen screen(2);
    return CairoGraphicsContexts(screen, sharedLines())
        .beginImageContext({width, height}, opaque, scale);
}

inline const CairoPixels& pixelsOf(const platform::UIImage& image) {
    return dynamic_cast<const CairoPixels&>(*image.pixels());
}

// 0xAARRGGBB, premultiplied.
inline std::uint32_t pixel(const platform::UIImage& image, int x, int y) {
    cairo_surface_t* surface = pixelsOf(image).surface();
    const unsigned char* row =
        cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface);
    return reinterpret_cast<const std::uint32_t*>(row)[x];
}

inline std::uint32_t pixel(platform::ImageContext& context, int x, int y) {
    return pixel(*context.image(), x, y);
}

inline int alphaOf(std::uint32_t pixelValue) {
    return static_cast<int>(pixelValue >> 24);
}

} // namespace quorvel::freedesktop
