#include "drawing/rounded_image.h"

#include "platform/graphics_context.h"
#include "platform/screen.h"

namespace quorvel {

using namespace platform;

namespace {

// Built in a space that is already scaled by the factor, with arcs of that radius in it: hence the
// squared radius of the result.
void addRoundedRectToPath(GraphicsContext& context, const CGRect& rect, CGFloat factor) {
    const CGFloat width = CGRectGetWidth(rect) / factor;
    const CGFloat height = CGRectGetHeight(rect) / factor;

    context.saveGState();
    context.translateCTM(CGRectGetMinX(rect), CGRectGetMinY(rect));
    context.scaleCTM(factor, factor);
    context.moveToPoint(width, height / 2);
    context.addArcToPoint(width, height, width / 2, height, factor);
    context.addArcToPoint(0, height, 0, height / 2, factor);
    context.addArcToPoint(0, 0, width / 2, 0, factor);
    context.addArcToPoint(width, 0, width, height / 2, factor);
    context.restoreGState();
}

} // namespace

std::shared_ptr<const UIImage>
roundedRectImageFromImage(GraphicsContexts& graphicsContexts, const Screen& screen,
                          const std::shared_ptr<const UIImage>& image, CGFloat factor) {
    if (factor == 0 || !image) {
        return image;
    }
    const auto canvas = graphicsContexts.beginImageContext(image->size(), false, screen.scale());
    if (!canvas) {
        return nullptr;
    }
    const CGRect rect{{0, 0}, image->size()};
    GraphicsContext& context = canvas->context();
    context.beginPath();
    addRoundedRectToPath(context, rect, factor);
    context.closePath();
    context.clip();
    context.drawImage(*image, rect);
    return canvas->image();
}

} // namespace quorvel
