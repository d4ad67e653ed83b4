// PNG files: whatever an image contains, its pixels are those that cairo writes.
#include "freedesktop/graphics/png_encoding.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "freedesktop/graphics/cairo_handles.h"

namespace quorvel::freedesktop {
namespace {

constexpr int side = 256;

cairo_status_t append(void* contents, const unsigned char* bytes, unsigned int count) {
    static_cast<std::string*>(contents)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
}

struct Reader {
    const std::string& bytes;
    std::size_t position = 0;

    static cairo_status_t read(void* reader, unsigned char* bytes, unsigned int count) {
        auto& self = *static_cast<Reader*>(reader);
        if (count > self.bytes.size() - self.position) {
            return CAIRO_STATUS_READ_ERROR;
        }
        std::memcpy(bytes, self.bytes.data() + self.position, count);
        self.position += count;
        return CAIRO_STATUS_SUCCESS;
    }
};

// A line for each opacity, with every colour that it allows.
SurfaceHandle everyPixel() {
    SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, side, side));
    unsigned char* const data = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (std::uint32_t opacity = 0; opacity < side; ++opacity) {
        for (std::uint32_t x = 0; x < side; ++x) {
            const std::uint32_t value = x <= opacity ? x : opacity;
            const std::uint32_t pixel =
                opacity << 24U | value << 16U | (opacity - value) << 8U | value / 2;
            std::memcpy(data + static_cast<std::size_t>(stride) * opacity + 4UL * x, &pixel, 4);
        }
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

std::vector<std::uint32_t> pixelsOf(const std::string& png) {
    Reader reader{png};
    const SurfaceHandle image(cairo_image_surface_create_from_png_stream(Reader::read, &reader));
    std::vector<std::uint32_t> pixels;
    const unsigned char* const data = cairo_image_surface_get_data(image.get());
    for (int y = 0; y < cairo_image_surface_get_height(image.get()); ++y) {
        const auto* const line = reinterpret_cast<const std::uint32_t*>(
            data + static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(image.get()));
        pixels.insert(pixels.end(), line, line + cairo_image_surface_get_width(image.get()));
    }
    return pixels;
}

TEST(PngEncoding, HasThePixelsThatCairoWrites) {
    const SurfaceHandle image = everyPixel();
    std::string expected;
    ASSERT_EQ(cairo_surface_write_to_png_stream(image.get(), append, &expected),
              CAIRO_STATUS_SUCCESS);
    const auto written = pngOf(image.get());
    ASSERT_TRUE(written) << written.error().what;
    const std::vector<std::uint32_t> pixels = pixelsOf(*written);
    EXPECT_EQ(pixels.size(), std::size_t{side} * side);
    EXPECT_TRUE(pixels == pixelsOf(expected));
}

// The second byte behind the size says which colours a file has: 2 without opacities, 6 with them.
TEST(PngEncoding, HasOpacitiesOnlyIfAPixelIsNotOpaque) {
    constexpr std::size_t placeOfColours = 25;
    const auto coloursOf = [](std::uint32_t last) {
        const SurfaceHandle image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 3, 2));
        unsigned char* const data = cairo_image_surface_get_data(image.get());
        for (std::size_t i = 0; i < 6; ++i) {
            const std::uint32_t pixel = i < 5 ? 0xFF102030U : last;
            std::memcpy(data + 4 * i, &pixel, 4); // the stride of three pixels is 12
        }
        const std::string png = *pngOf(image.get());
        EXPECT_EQ(pixelsOf(png).front(), 0xFF102030U);
        EXPECT_EQ(pixelsOf(png).back(), last);
        return static_cast<int>(png.at(placeOfColours));
    };
    EXPECT_EQ(coloursOf(0xFF405060U), 2);
    EXPECT_EQ(coloursOf(0xFE000000U), 6);
}

TEST(PngEncoding, APictureOfOnePixel) {
    const SurfaceHandle image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
    const auto written = pngOf(image.get());
    ASSERT_TRUE(written);
    EXPECT_EQ(pixelsOf(*written), std::vector<std::uint32_t>{0});
}

TEST(PngEncoding, AnImageThatPngCannotHoldIsAnError) {
    const SurfaceHandle image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 0, 0));
    const auto written = pngOf(image.get());
    ASSERT_FALSE(written);
    EXPECT_FALSE(written.error().what.empty());
}

} // namespace
} // namespace quorvel::freedesktop
