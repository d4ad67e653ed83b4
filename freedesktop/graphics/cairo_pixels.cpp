#include "freedesktop/graphics/cairo_pixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace quorvel::freedesktop {

using platform::UIEdgeInsets;
using platform::UIImage;

namespace {

constexpr std::size_t maximumScaledCopies = 3;
constexpr double maximumScaledPixels = 1 << 22;

// One row or column of parts: its position in the original and in the scaled image.
struct Band {
    int from = 0;
    int fromLength = 0;
    int to = 0;
    int toLength = 0;
};

// The leading cap, the stretched part and the trailing cap. If both caps do not fit, they share the
// length.
std::array<Band, 3> bands(int fromLength, int toLength, double leadingPoints, double trailingPoints,
                          double fromScale, double toScale) {
    const auto pixels = [](double points, double scale, int maximum) {
        const double length = std::round(points * scale);
        return length > 0 ? static_cast<int>(std::min<double>(length, maximum)) : 0;
    };
    const int fromLeading = pixels(leadingPoints, fromScale, fromLength);
    const int fromTrailing = pixels(trailingPoints, fromScale, fromLength - fromLeading);
    int toLeading = fromLeading > 0 ? pixels(leadingPoints, toScale, 1 << 24) : 0;
    int toTrailing = fromTrailing > 0 ? pixels(trailingPoints, toScale, 1 << 24) : 0;
    if (toLeading + toTrailing > toLength) {
        toLeading = static_cast<int>(
            std::lround(static_cast<double>(toLength) * toLeading / (toLeading + toTrailing)));
        toTrailing = toLength - toLeading;
    }
    return {{{0, fromLeading, 0, toLeading},
             {fromLeading, fromLength - fromLeading - fromTrailing, toLeading,
              toLength - toLeading - toTrailing},
             {fromLength - fromTrailing, fromTrailing, toLength - toTrailing, toTrailing}}};
}

// Refers to a part of the pixels, which must outlive it.
SurfaceHandle partOf(cairo_surface_t* surface, const Band& column, const Band& row) {
    const int stride = cairo_image_surface_get_stride(surface);
    unsigned char* data = cairo_image_surface_get_data(surface) +
                          static_cast<std::ptrdiff_t>(row.from) * stride +
                          static_cast<std::ptrdiff_t>(column.from) * 4;
    return SurfaceHandle(cairo_image_surface_create_for_data(
        data, CAIRO_FORMAT_ARGB32, column.fromLength, row.fromLength, stride));
}

void paintPart(cairo_t* context, cairo_surface_t* surface, const Band& column, const Band& row) {
    if (column.fromLength <= 0 || row.fromLength <= 0 || column.toLength <= 0 || row.toLength <= 0)
        return;
    const SurfaceHandle part = partOf(surface, column, row);
    const PatternHandle pattern(cairo_pattern_create_for_surface(part.get()));
    cairo_matrix_t matrix;
    cairo_matrix_init_scale(&matrix, static_cast<double>(column.fromLength) / column.toLength,
                            static_cast<double>(row.fromLength) / row.toLength);
    cairo_matrix_translate(&matrix, -column.to, -row.to);
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD); // no fading towards the edges
    cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_GOOD);
    cairo_set_source(context, pattern.get());
    cairo_rectangle(context, column.to, row.to, column.toLength, row.toLength);
    cairo_fill(context);
}

SurfaceHandle scaledCopy(cairo_surface_t* surface, const UIImage& image, int width, int height,
                         double capScaleX, double capScaleY) {
    SurfaceHandle copy = createPixels(width, height);
    if (!copy)
        return nullptr;
    const UIEdgeInsets caps = image.capInsets().value_or(UIEdgeInsets{});
    const auto columns = bands(cairo_image_surface_get_width(surface), width, caps.left, caps.right,
                               image.scale(), capScaleX);
    const auto rows = bands(cairo_image_surface_get_height(surface), height, caps.top, caps.bottom,
                            image.scale(), capScaleY);
    const ContextHandle context(cairo_create(copy.get()));
    cairo_set_operator(context.get(), CAIRO_OPERATOR_SOURCE);
    for (const Band& row : rows) {
        for (const Band& column : columns)
            paintPart(context.get(), surface, column, row);
    }
    cairo_surface_flush(copy.get());
    return copy;
}

} // namespace

SurfaceHandle createPixels(int width, int height) {
    SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    return isGood(surface) ? std::move(surface) : nullptr;
}

CairoPixels::CairoPixels(SurfaceHandle surface)
    : m_surface(std::move(surface)) {}

int CairoPixels::width() const {
    return cairo_image_surface_get_width(m_surface.get());
}

int CairoPixels::height() const {
    return cairo_image_surface_get_height(m_surface.get());
}

cairo_surface_t* CairoPixels::surfaceOfSize(const UIImage& image, int width, int height,
                                            double capScaleX, double capScaleY) const {
    if (width == this->width() && height == this->height() && !image.capInsets())
        return m_surface.get();
    for (const Scaled& scaled : m_scaled) {
        if (scaled.width == width && scaled.height == height &&
            scaled.capInsets == image.capInsets() && scaled.capScaleX == capScaleX &&
            scaled.capScaleY == capScaleY)
            return scaled.surface.get();
    }
    if (static_cast<double>(width) * height > maximumScaledPixels || width > maximumSide ||
        height > maximumSide)
        return nullptr;
    SurfaceHandle copy = scaledCopy(m_surface.get(), image, width, height, capScaleX, capScaleY);
    if (!copy)
        return nullptr;
    if (m_scaled.size() == maximumScaledCopies)
        m_scaled.erase(m_scaled.begin());
    m_scaled.push_back({width, height, capScaleX, capScaleY, image.capInsets(), std::move(copy)});
    return m_scaled.back().surface.get();
}

std::shared_ptr<const UIImage> imageOfPixels(SurfaceHandle pixels, double scale) {
    auto owned = std::make_shared<const CairoPixels>(std::move(pixels));
    const platform::CGSize size = {owned->width() / scale, owned->height() / scale};
    return std::make_shared<const UIImage>(std::move(owned), size, scale);
}

} // namespace quorvel::freedesktop
