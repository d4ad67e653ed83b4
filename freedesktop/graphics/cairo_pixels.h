// The pixels of an image. Only for this folder.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "freedesktop/graphics/cairo_handles.h"
#include "platform/ui_image.h"

namespace quorvel::freedesktop {

// The limits of an image in pixels: per side, and in total.
inline constexpr int maximumSide = 16384;
inline constexpr double maximumPixels = 1 << 26;

// Transparent pixels. Null if there is not enough memory.
SurfaceHandle createPixels(int width, int height);

// Premultiplied pixels of 32 bits. Caches copies in the sizes at which the image is drawn, so that
// each is scaled once.
class CairoPixels final : public platform::ImagePixels {
public:
    explicit CairoPixels(SurfaceHandle surface);

    cairo_surface_t* surface() const { return m_surface.get(); }
    int width() const;
    int height() const;

    // The image scaled to that many pixels. Cap insets are not stretched and have `capScale` pixels
    // per point. Null for a size that is too large to cache. Valid until the next call.
    cairo_surface_t* surfaceOfSize(const platform::UIImage& image, int width, int height,
                                   double capScaleX, double capScaleY) const;

private:
    struct Scaled {
        int width = 0;
        int height = 0;
        double capScaleX = 0;
        double capScaleY = 0;
        std::optional<platform::UIEdgeInsets> capInsets;
        SurfaceHandle surface;
    };

    SurfaceHandle m_surface;
    mutable std::vector<Scaled> m_scaled; // a cache, the oldest first
};

// An image whose size in points is its size in pixels divided by the scale.
std::shared_ptr<const platform::UIImage> imageOfPixels(SurfaceHandle pixels, double scale);

} // namespace quorvel::freedesktop
