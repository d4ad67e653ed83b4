// Owning pointers to cairo's objects. Only for this folder.
#pragma once

#include <memory>

#include <cairo.h>

namespace quorvel::freedesktop {

struct SurfaceDestroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using SurfaceHandle = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;

struct ContextDestroy {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using ContextHandle = std::unique_ptr<cairo_t, ContextDestroy>;

struct PatternDestroy {
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using PatternHandle = std::unique_ptr<cairo_pattern_t, PatternDestroy>;

inline bool isGood(const SurfaceHandle& surface) {
    return surface && cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS;
}

} // namespace quorvel::freedesktop
