#include "tests/golden/picture.h"

#include <cairo.h>

#include <cstring>
#include <memory>

namespace quorvel::golden {

std::optional<Picture> readPicture(const std::string& path) {
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_from_png(path.c_str()), &cairo_surface_destroy);
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
        return std::nullopt;
    const cairo_format_t format = cairo_image_surface_get_format(surface.get());
    if (format != CAIRO_FORMAT_ARGB32 && format != CAIRO_FORMAT_RGB24)
        return std::nullopt;

    Picture picture;
    picture.width = cairo_image_surface_get_width(surface.get());
    picture.height = cairo_image_surface_get_height(surface.get());
    picture.hasAlpha = format == CAIRO_FORMAT_ARGB32;
    const auto width = static_cast<std::size_t>(picture.width);
    picture.pixels.resize(width * static_cast<std::size_t>(picture.height));
    const unsigned char* row = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    for (int y = 0; y < picture.height && width > 0; ++y, row += stride)
        std::memcpy(&picture.at(0, y), row, width * sizeof(std::uint32_t));
    if (!picture.hasAlpha) {
        for (std::uint32_t& pixel : picture.pixels)
            pixel |= 0xFF000000U; // these bits are not defined
    }
    return picture;
}

} // namespace quorvel::golden
