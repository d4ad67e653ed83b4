#include "freedesktop/graphics/cairo_graphics_context.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

#include "freedesktop/graphics/cairo_pixels.h"
#include "freedesktop/graphics/tangent_arc.h"

namespace quorvel::freedesktop {

using platform::CGFloat;
using platform::CGPoint;
using platform::CGRect;
using platform::UIColor;
using platform::UIFont;
using platform::UIImage;

namespace {

constexpr CGFloat fullCircle = 2 * std::numbers::pi;

bool isFinite(const CGRect& rect) {
    return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) &&
           std::isfinite(rect.size.width) && std::isfinite(rect.size.height);
}

bool hasArea(const CGRect& rect) {
    return isFinite(rect) && rect.size.width > 0 && rect.size.height > 0;
}

// The visible part. Cairo's own coordinates overflow at some millions.
std::optional<CGRect> shownPart(cairo_t* context, const CGRect& rect) {
    if (!hasArea(rect))
        return std::nullopt;
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    cairo_clip_extents(context, &left, &top, &right, &bottom);
    left = std::max(left, CGRectGetMinX(rect));
    top = std::max(top, CGRectGetMinY(rect));
    right = std::min(right, CGRectGetMaxX(rect));
    bottom = std::min(bottom, CGRectGetMaxY(rect));
    if (left >= right || top >= bottom)
        return std::nullopt;
    return platform::CGRectMake(left, top, right - left, bottom - top);
}

void addRectangle(cairo_t* context, const CGRect& rect) {
    cairo_rectangle(context, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

void setSource(cairo_t* context, const UIColor& color) {
    cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
}

bool isSurfaceOfPixels(cairo_t* context) {
    switch (cairo_surface_get_type(cairo_get_target(context))) {
    case CAIRO_SURFACE_TYPE_PDF:
    case CAIRO_SURFACE_TYPE_PS:
    case CAIRO_SURFACE_TYPE_SVG:
    case CAIRO_SURFACE_TYPE_RECORDING:
    case CAIRO_SURFACE_TYPE_SCRIPT:
        return false;
    default:
        return true;
    }
}

// Whole device pixels.
struct DeviceRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    double bottom = 0; // before it was rounded
    double scaleX = 1; // device pixels per point
    double scaleY = 1;
    double surfaceScaleX = 1; // device pixels per unit of the surface
    double surfaceScaleY = 1;
};

// The nearest whole pixels. Absent if the transform rotates or mirrors, or the result is too large.
std::optional<DeviceRect> deviceRect(cairo_t* context, const CGRect& rect) {
    DeviceRect device;
    cairo_surface_get_device_scale(cairo_get_group_target(context), &device.surfaceScaleX,
                                   &device.surfaceScaleY);
    cairo_matrix_t matrix;
    cairo_matrix_t surfaceMatrix;
    cairo_get_matrix(context, &matrix);
    cairo_matrix_init_scale(&surfaceMatrix, device.surfaceScaleX, device.surfaceScaleY);
    cairo_matrix_multiply(&matrix, &matrix, &surfaceMatrix);
    constexpr double maximum = 1 << 22;
    double left = CGRectGetMinX(rect);
    double top = CGRectGetMinY(rect);
    double right = CGRectGetMaxX(rect);
    double bottom = CGRectGetMaxY(rect);
    cairo_matrix_transform_point(&matrix, &left, &top);
    cairo_matrix_transform_point(&matrix, &right, &bottom);
    const bool isUpright = matrix.xy == 0 && matrix.yx == 0 && left < right && top < bottom;
    if (!isUpright || left < -maximum || top < -maximum || right > maximum || bottom > maximum)
        return std::nullopt;
    device.x = static_cast<int>(std::lround(left));
    device.y = static_cast<int>(std::lround(top));
    device.width = std::max(1, static_cast<int>(std::lround(right)) - device.x);
    device.height = std::max(1, static_cast<int>(std::lround(bottom)) - device.y);
    device.scaleX = matrix.xx;
    device.scaleY = matrix.yy;
    device.bottom = bottom;
    return device;
}

// The units become device pixels.
void useDevicePixels(cairo_t* context, const DeviceRect& device) {
    cairo_identity_matrix(context);
    cairo_scale(context, 1 / device.surfaceScaleX, 1 / device.surfaceScaleY);
}

void paintPixels(cairo_t* context, cairo_surface_t* pixels, const DeviceRect& device) {
    cairo_save(context);
    useDevicePixels(context, device);
    cairo_set_source_surface(context, pixels, device.x, device.y);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
    cairo_rectangle(context, device.x, device.y, device.width, device.height);
    cairo_fill(context);
    cairo_restore(context);
}

void paintScaled(cairo_t* context, cairo_surface_t* pixels, const CGRect& rect) {
    cairo_save(context);
    cairo_translate(context, rect.origin.x, rect.origin.y);
    cairo_scale(context, rect.size.width / cairo_image_surface_get_width(pixels),
                rect.size.height / cairo_image_surface_get_height(pixels));
    cairo_set_source_surface(context, pixels, 0, 0);
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_GOOD);
    cairo_rectangle(context, 0, 0, cairo_image_surface_get_width(pixels),
                    cairo_image_surface_get_height(pixels));
    cairo_fill(context);
    cairo_restore(context);
}

// A stretched image for a surface without device pixels: uses the image's own scale.
cairo_surface_t* stretchedPixels(const CairoPixels& pixels, const UIImage& image,
                                 const CGRect& rect) {
    const auto length = [&](CGFloat points) {
        return static_cast<int>(std::clamp(std::round(points * image.scale()), 1.0, 1e6));
    };
    return pixels.surfaceOfSize(image, length(rect.size.width), length(rect.size.height),
                                image.scale(), image.scale());
}

} // namespace

CairoGraphicsContext::CairoGraphicsContext(struct _cairo* context, std::shared_ptr<TextLines> lines)
    : m_context(cairo_reference(context))
    , m_lines(std::move(lines))
    , m_isRaster(isSurfaceOfPixels(context)) {
    cairo_save(m_context);
    cairo_set_line_width(m_context, 1);
}

CairoGraphicsContext::~CairoGraphicsContext() {
    while (m_states.size() > 1)
        restoreGState();
    cairo_restore(m_context);
    cairo_destroy(m_context);
}

void CairoGraphicsContext::saveGState() {
    cairo_save(m_context);
    m_states.push_back(state());
}

void CairoGraphicsContext::restoreGState() {
    if (m_states.size() > 1) {
        m_states.pop_back();
        cairo_restore(m_context);
    }
}

void CairoGraphicsContext::translateCTM(CGFloat tx, CGFloat ty) {
    if (std::isfinite(tx) && std::isfinite(ty))
        cairo_translate(m_context, tx, ty);
}

void CairoGraphicsContext::scaleCTM(CGFloat sx, CGFloat sy) {
    if (std::isnormal(sx) && std::isnormal(sy))
        cairo_scale(m_context, sx, sy);
    else
        hideEverything(); // nothing has an extent any more
}

void CairoGraphicsContext::hideEverything() {
    cairo_new_path(m_context);
    cairo_clip(m_context);
}

void CairoGraphicsContext::beginPath() {
    cairo_new_path(m_context);
}

void CairoGraphicsContext::moveToPoint(CGFloat x, CGFloat y) {
    if (std::isfinite(x) && std::isfinite(y))
        cairo_move_to(m_context, x, y);
}

void CairoGraphicsContext::addArcToPoint(CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2,
                                         CGFloat radius) {
    if (cairo_has_current_point(m_context) == 0 || !isFinite({{x1, y1}, {x2, y2}}))
        return;
    CGPoint current;
    cairo_get_current_point(m_context, &current.x, &current.y);
    const std::optional<TangentArc> arc = tangentArc(current, {x1, y1}, {x2, y2}, radius);
    if (!arc) {
        cairo_line_to(m_context, x1, y1);
        return;
    }
    // cairo_arc() itself adds the line to the start of the arc.
    const auto addArc = arc->clockwise ? cairo_arc : cairo_arc_negative;
    addArc(m_context, arc->center.x, arc->center.y, arc->radius, arc->startAngle, arc->endAngle);
}

void CairoGraphicsContext::closePath() {
    if (cairo_has_current_point(m_context) != 0)
        cairo_close_path(m_context);
}

void CairoGraphicsContext::clip() {
    if (cairo_has_current_point(m_context) != 0) // an empty path clips nothing
        cairo_clip(m_context);
}

void CairoGraphicsContext::clipToRect(const CGRect& rect) {
    cairo_new_path(m_context);
    if (const std::optional<CGRect> part = shownPart(m_context, rect))
        addRectangle(m_context, *part);
    cairo_clip(m_context);
}

void CairoGraphicsContext::setLineWidth(CGFloat width) {
    if (std::isfinite(width) && width >= 0)
        cairo_set_line_width(m_context, width);
}

void CairoGraphicsContext::setStrokeColor(const UIColor& color) {
    state().strokeColor = color;
}

void CairoGraphicsContext::setFillColor(const UIColor& color) {
    state().fillColor = color;
}

void CairoGraphicsContext::addEllipse(const CGRect& rect) {
    cairo_new_path(m_context);
    cairo_matrix_t matrix;
    cairo_get_matrix(m_context, &matrix);
    cairo_translate(m_context, rect.origin.x + rect.size.width / 2,
                    rect.origin.y + rect.size.height / 2);
    cairo_scale(m_context, rect.size.width / 2, rect.size.height / 2);
    cairo_arc(m_context, 0, 0, 1, 0, fullCircle);
    cairo_close_path(m_context);
    cairo_set_matrix(m_context, &matrix);
}

void CairoGraphicsContext::strokeEllipseInRect(const CGRect& rect) {
    if (!hasArea(rect))
        return;
    addEllipse(rect);
    setSource(m_context, state().strokeColor);
    cairo_stroke(m_context);
}

void CairoGraphicsContext::fillEllipseInRect(const CGRect& rect) {
    if (!hasArea(rect))
        return;
    addEllipse(rect);
    setSource(m_context, state().fillColor);
    cairo_fill(m_context);
}

void CairoGraphicsContext::fillRect(const CGRect& rect) {
    cairo_new_path(m_context);
    const std::optional<CGRect> part = shownPart(m_context, rect);
    if (!part)
        return;
    addRectangle(m_context, *part);
    setSource(m_context, state().fillColor);
    cairo_fill(m_context);
}

void CairoGraphicsContext::fillHairline(const CGRect& rect) {
    const std::optional<CGRect> part = shownPart(m_context, rect);
    const auto device = part && m_isRaster
                            ? deviceRect(m_context, {{part->origin.x, rect.origin.y},
                                                     {part->size.width, rect.size.height}})
                            : std::nullopt;
    if (!device) {
        fillRect(rect);
        return;
    }
    constexpr double rounding = 1e-6; // of the product of points and scale
    cairo_new_path(m_context);
    cairo_save(m_context);
    useDevicePixels(m_context, *device);
    cairo_rectangle(m_context, device->x, std::floor(device->bottom + rounding) - 1, device->width,
                    1);
    setSource(m_context, state().fillColor);
    cairo_fill(m_context);
    cairo_restore(m_context);
}

void CairoGraphicsContext::drawImage(const UIImage& image, const CGRect& rect) {
    const auto* pixels = dynamic_cast<const CairoPixels*>(image.pixels());
    if (pixels == nullptr || !shownPart(m_context, rect))
        return;
    cairo_new_path(m_context);
    if (const auto device = m_isRaster ? deviceRect(m_context, rect) : std::nullopt) {
        if (cairo_surface_t* scaled = pixels->surfaceOfSize(image, device->width, device->height,
                                                            device->scaleX, device->scaleY)) {
            paintPixels(m_context, scaled, *device);
            return;
        }
    }
    cairo_surface_t* stretched =
        image.capInsets() ? stretchedPixels(*pixels, image, rect) : nullptr;
    paintScaled(m_context, stretched != nullptr ? stretched : pixels->surface(), rect);
}

void CairoGraphicsContext::drawText(std::string_view text, const UIFont& font, const UIColor& color,
                                    const CGRect& rect) {
    if (shownPart(m_context, rect))
        m_lines->paint(m_context, text, font, color, rect);
}

} // namespace quorvel::freedesktop
