#include "freedesktop/graphics/cairo_graphics_contexts.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "freedesktop/graphics/cairo_graphics_context.h"
#include "freedesktop/graphics/cairo_pixels.h"
#include "freedesktop/graphics/pixel_length.h"

namespace quorvel::freedesktop {

using platform::CGFloat;
using platform::CGSize;
using platform::UIImage;

namespace {

SurfaceHandle copyOf(cairo_surface_t* surface) {
    cairo_surface_flush(surface);
    const int height = cairo_image_surface_get_height(surface);
    SurfaceHandle copy = createPixels(cairo_image_surface_get_width(surface), height);
    if (!copy)
        return nullptr;
    std::memcpy(cairo_image_surface_get_data(copy.get()), cairo_image_surface_get_data(surface),
                static_cast<std::size_t>(cairo_image_surface_get_stride(surface)) *
                    static_cast<std::size_t>(height));
    cairo_surface_mark_dirty(copy.get());
    return copy;
}

class CairoImageContext final : public platform::ImageContext {
public:
    CairoImageContext(SurfaceHandle surface, CGSize size, CGFloat scale,
                      std::shared_ptr<TextLines> lines)
        : m_surface(std::move(surface))
        , m_size(size)
        , m_scale(scale)
        , m_cairo(scaledContext(m_surface.get(), scale))
        , m_context(m_cairo.get(), std::move(lines)) {}

    platform::GraphicsContext& context() override { return m_context; }

    std::shared_ptr<const UIImage> image() override {
        SurfaceHandle copy = copyOf(m_surface.get());
        if (!copy)
            return nullptr;
        return std::make_shared<const UIImage>(std::make_shared<const CairoPixels>(std::move(copy)),
                                               m_size, m_scale);
    }

private:
    static ContextHandle scaledContext(cairo_surface_t* surface, CGFloat scale) {
        ContextHandle context(cairo_create(surface));
        cairo_scale(context.get(), scale, scale);
        return context;
    }

    SurfaceHandle m_surface;
    CGSize m_size;
    CGFloat m_scale;
    ContextHandle m_cairo;
    CairoGraphicsContext m_context;
};

void fillBlack(cairo_surface_t* surface) {
    const ContextHandle context(cairo_create(surface));
    cairo_set_source_rgb(context.get(), 0, 0, 0);
    cairo_paint(context.get());
}

} // namespace

CairoGraphicsContexts::CairoGraphicsContexts(const platform::Screen& screen,
                                             std::shared_ptr<TextLines> lines)
    : m_screen(screen)
    , m_lines(std::move(lines)) {}

std::unique_ptr<platform::ImageContext>
CairoGraphicsContexts::beginImageContext(CGSize size, bool opaque, CGFloat scale) {
    const CGFloat usedScale = scale == 0 ? m_screen.scale() : scale;
    const CGFloat width = pixelLength(size.width, usedScale);
    const CGFloat height = pixelLength(size.height, usedScale);
    const bool fits = usedScale > 0 && width >= 1 && width <= maximumSide && height >= 1 &&
                      height <= maximumSide && width * height <= maximumPixels;
    SurfaceHandle surface =
        fits ? createPixels(static_cast<int>(width), static_cast<int>(height)) : nullptr;
    if (!surface)
        return nullptr;
    if (opaque)
        fillBlack(surface.get());
    return std::make_unique<CairoImageContext>(std::move(surface), size, usedScale, m_lines);
}

} // namespace quorvel::freedesktop
