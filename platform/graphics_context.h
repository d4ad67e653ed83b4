// What the widget and the view classes paint with. Coordinates are points, y grows downwards.
#pragma once

#include <memory>
#include <string_view>

#include "platform/geometry.h"
#include "platform/ui_color.h"
#include "platform/ui_font.h"
#include "platform/ui_image.h"

namespace quorvel::platform {

class GraphicsContext {
public:
    virtual ~GraphicsContext() = default;

    // The state: transform, clip, line width, colours. The path is not part of it.
    virtual void saveGState() = 0;
    virtual void restoreGState() = 0;
    virtual void translateCTM(CGFloat tx, CGFloat ty) = 0;
    virtual void scaleCTM(CGFloat sx, CGFloat sy) = 0;

    // The current transform applies to a point when it is added; later transforms do not move it.
    virtual void beginPath() = 0;
    virtual void moveToPoint(CGFloat x, CGFloat y) = 0;
    // The arc of that radius that touches the line from the current point to the first point and
    // the line from the first point to the second.
    virtual void addArcToPoint(CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius) = 0;
    virtual void closePath() = 0;
    virtual void clip() = 0; // to the path, non-zero winding; the path is empty afterwards
    virtual void clipToRect(const CGRect& rect) = 0;

    virtual void setLineWidth(CGFloat width) = 0;
    virtual void setStrokeColor(const UIColor& color) = 0;
    virtual void setFillColor(const UIColor& color) = 0;
    virtual void strokeEllipseInRect(const CGRect& rect) = 0;
    virtual void fillEllipseInRect(const CGRect& rect) = 0;
    virtual void fillRect(const CGRect& rect) = 0;
    // Fills one row of device pixels, the lowest above the rectangle's bottom, so that a line is
    // equally sharp at every position and scale. A surface without pixels, or a transform that
    // rotates or mirrors, fills the rectangle.
    virtual void fillHairline(const CGRect& rect) = 0;

    // Scaled to fill the rectangle; cap insets are not scaled.
    virtual void drawImage(const UIImage& image, const CGRect& rect) = 0;
    // One line from the rectangle's left edge, vertically centred in it, cut with an ellipsis at
    // the tail where it is wider. `text` is UTF-8 and may be damaged.
    virtual void drawText(std::string_view text, const UIFont& font, const UIColor& color,
                          const CGRect& rect) = 0;
};

// A context that paints into a new picture.
class ImageContext {
public:
    virtual ~ImageContext() = default;
    virtual GraphicsContext& context() = 0;             // lives as long as this object
    virtual std::shared_ptr<const UIImage> image() = 0; // what has been painted so far
};

class GraphicsContexts {
public:
    virtual ~GraphicsContexts() = default;
    // Transparent unless opaque. `size` is in points; scale 0 is the screen's. Null for a size that
    // is empty or larger than the platform can hold.
    virtual std::unique_ptr<ImageContext> beginImageContext(CGSize size, bool opaque,
                                                            CGFloat scale) = 0;
};

} // namespace quorvel::platform
