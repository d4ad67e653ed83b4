#include "drawing/colored_dot.h"

#include "platform/graphics_context.h"

namespace quorvel {

using namespace platform;

namespace {

// The canvas has one size for all dots, so that the same image view shows dots of two sizes
// differently.
constexpr CGFloat canvasSide = 80;
constexpr CGFloat canvasScale = 1;
constexpr CGFloat outlineWidth = 2;

void paintDot(GraphicsContext& context, const std::optional<UIColor>& color, CGFloat diameter) {
    const CGFloat inset = (canvasSide - diameter) * 0.5;
    const CGRect square = CGRectMake(inset, inset, diameter, diameter);

    context.setLineWidth(outlineWidth);
    context.setStrokeColor(UIColor::blackColor());
    if (color) {
        context.setFillColor(*color);
    }
    // The fill comes second: it covers the inner half of the outline.
    context.strokeEllipseInRect(square);
    if (color) {
        context.fillEllipseInRect(square);
    }
}

} // namespace

std::shared_ptr<const UIImage> drawColoredDot(GraphicsContexts& graphicsContexts,
                                              const std::optional<UIColor>& color,
                                              CGFloat diameter) {
    const auto canvas =
        graphicsContexts.beginImageContext({canvasSide, canvasSide}, false, canvasScale);
    if (!canvas) {
        return nullptr;
    }
    paintDot(canvas->context(), color, diameter);
    return canvas->image();
}

} // namespace quorvel
