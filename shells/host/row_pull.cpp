#include "shells/host/row_pull.h"

#include <algorithm>
#include <string_view>

#include "platform/graphics_context.h"
#include "platform/ui_font.h"

namespace quorvel::shells {

using platform::CGFloat;
using platform::CGRect;
using platform::CGRectMake;
using platform::GraphicsContext;
using platform::UIColor;

namespace {

constexpr CGFloat firmDistance = 80;      // points
constexpr CGFloat gap = 4;                // points between the colour and the row's content
constexpr CGFloat inset = 2;              // points around the colour
constexpr CGFloat radius = 8;             // of its corners
constexpr CGFloat textInset = 14;         // points to the left of the text
constexpr CGFloat textSize = 14;          // points
constexpr CGFloat paleAlpha = 0.35;       // of the colour before the pull is firm
constexpr std::string_view text = "Open"; // an event, a day or an application
constexpr UIColor hostColor{0.35, 0.55, 0.95, 1};

// The perceived brightness, from 0 to 1.
CGFloat brightness(const UIColor& color) {
    return 0.299 * color.red + 0.587 * color.green + 0.114 * color.blue;
}

UIColor textColorOn(const UIColor& background) {
    return brightness(background) > 0.6 ? UIColor::blackColor() : UIColor::whiteColor();
}

void clipToRoundedRect(GraphicsContext& context, const CGRect& rect) {
    const CGFloat corner = std::min({radius, rect.size.width / 2, rect.size.height / 2});
    const CGFloat left = CGRectGetMinX(rect);
    const CGFloat right = CGRectGetMaxX(rect);
    const CGFloat top = CGRectGetMinY(rect);
    const CGFloat bottom = CGRectGetMaxY(rect);
    context.beginPath();
    context.moveToPoint(left + corner, top);
    context.addArcToPoint(right, top, right, bottom, corner);
    context.addArcToPoint(right, bottom, left, bottom, corner);
    context.addArcToPoint(left, bottom, left, top, corner);
    context.addArcToPoint(left, top, right, top, corner);
    context.closePath();
    context.clip();
}

} // namespace

bool isFirm(const RowPull& pull) {
    return pull.distance > firmDistance;
}

void paintPull(GraphicsContext& context, const RowPull& pull, const UIColor& textColor) {
    const CGRect& row = pull.frame;
    const CGFloat width = std::min(pull.distance, row.size.width) - gap;
    const CGRect rect = CGRectMake(row.origin.x + inset, row.origin.y + inset, width - inset,
                                   row.size.height - 2 * inset);
    if (!(rect.size.width > 0 && rect.size.height > 0)) {
        return;
    }
    UIColor color = pull.color.value_or(hostColor);
    const UIColor shownTextColor = isFirm(pull) ? textColorOn(color) : textColor;
    color.alpha = isFirm(pull) ? 1 : paleAlpha;
    context.saveGState();
    clipToRoundedRect(context, rect);
    context.setFillColor(color);
    context.fillRect(rect);
    // Wide enough for the whole text, which the row's content uncovers.
    context.drawText(
        text, platform::UIFont::systemFontOfSize(textSize), shownTextColor,
        CGRectMake(row.origin.x + textInset, rect.origin.y, row.size.width, rect.size.height));
    context.restoreGState();
}

} // namespace quorvel::shells
