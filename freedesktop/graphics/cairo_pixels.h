// The pixels of a picture. For this folder's own sources.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "freedesktop/graphics/cairo_handles.h"
#include "platform/ui_image.h"

namespace quorvel::freedesktop {

// No picture has more pixels than this to a side, nor altogether.
inline constexpr int maximumSide = 16384;
inline constexpr double maximumPixels = 1 << 26;

// Null where there is no memory for them; the pixels are transparent.
SurfaceHandle createPixels(int width, int height);

// Premultiplied pixels of 32 bits. A copy in the size that a picture is shown in is kept with it,
// so that it is scaled once and copied from then on.
class CairoPixels final : public platform::ImagePixels {
public:
    explicit CairoPixels(SurfaceHandle surface);

    cairo_surface_t* surface() const { return m_surface.get(); }
    int width() const;
    int height() const;

    // The picture in exactly that many pixels, `capScale` of them a point for the cap insets, which
    // keep their size. Null for a size that is not worth keeping.
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
    mutable std::vector<Scaled> m_scaled; // the oldest first
};

// A picture whose size in points is its pixels over the scale.
std::shared_ptr<const platform::UIImage> imageOfPixels(SurfaceHandle pixels, double scale);

} // namespace quorvel::freedesktop
