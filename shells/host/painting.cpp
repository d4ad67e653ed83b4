#include "shells/host/painting.h"

#include <algorithm>
#include <cairo.h>
#include <numbers>

namespace quorvel::shells {

using platform::CGFloat;
using platform::CGRect;
using platform::UIColor;

namespace {

constexpr CGFloat focusWidth = 1.5; // points
constexpr CGFloat focusInset = 2;
constexpr CGFloat focusRadius = 7;
constexpr CGFloat focusOpacity = 0.85;

void addRoundedRect(cairo_t* context, const CGRect& rect, CGFloat wantedRadius) {
    constexpr double quarter = std::numbers::pi / 2;
    const CGFloat radius = std::min({wantedRadius, rect.size.width / 2, rect.size.height / 2});
    cairo_new_path(context);
    cairo_arc(context, CGRectGetMaxX(rect) - radius, CGRectGetMinY(rect) + radius, radius, -quarter,
              0);
    cairo_arc(context, CGRectGetMaxX(rect) - radius, CGRectGetMaxY(rect) - radius, radius, 0,
              quarter);
    cairo_arc(context, CGRectGetMinX(rect) + radius, CGRectGetMaxY(rect) - radius, radius, quarter,
              2 * quarter);
    cairo_arc(context, CGRectGetMinX(rect) + radius, CGRectGetMinY(rect) + radius, radius,
              2 * quarter, 3 * quarter);
    cairo_close_path(context);
}

bool isEmpty(const CGRect& rect) {
    return !(rect.size.width > 0 && rect.size.height > 0);
}

} // namespace

void paintBackdrop(cairo_t* context, const CGRect& rect, const std::optional<UIColor>& color,
                   bool isTranslucent) {
    const UIColor shown = color.value_or(UIColor::clearColor());
    cairo_save(context);
    cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    cairo_set_source_rgba(context, shown.red, shown.green, shown.blue,
                          isTranslucent ? shown.alpha : 1);
    cairo_new_path(context);
    cairo_rectangle(context, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
    cairo_fill(context);
    cairo_restore(context);
}

// One corner at a time, so that few pixels are touched.
void clearCorners(cairo_t* context, const CGRect& rect, CGFloat radius) {
    if (isEmpty(rect)) {
        return;
    }
    cairo_save(context);
    cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
    for (const CGFloat x : {CGRectGetMinX(rect), CGRectGetMaxX(rect) - radius}) {
        for (const CGFloat y : {CGRectGetMinY(rect), CGRectGetMaxY(rect) - radius}) {
            cairo_save(context);
            cairo_new_path(context);
            cairo_rectangle(context, x, y, radius, radius);
            cairo_clip(context);
            addRoundedRect(context, rect, radius);
            cairo_rectangle(context, rect.origin.x, rect.origin.y, rect.size.width,
                            rect.size.height);
            cairo_fill(context);
            cairo_restore(context);
        }
    }
    cairo_restore(context);
}

void paintFocus(cairo_t* context, const CGRect& row, const UIColor& color) {
    const CGRect outline = CGRectInset(row, focusInset, focusInset);
    if (isEmpty(outline)) {
        return;
    }
    cairo_save(context);
    cairo_set_source_rgba(context, color.red, color.green, color.blue, focusOpacity);
    cairo_set_line_width(context, focusWidth);
    addRoundedRect(context, outline, focusRadius);
    cairo_stroke(context);
    cairo_restore(context);
}

void paintBar(cairo_t* context, const CGRect& bar, const UIColor& color, CGFloat opacity) {
    constexpr CGFloat greatestOpacity = 0.45;
    cairo_save(context);
    cairo_set_source_rgba(context, color.red, color.green, color.blue, greatestOpacity * opacity);
    addRoundedRect(context, bar, bar.size.width / 2);
    cairo_fill(context);
    cairo_restore(context);
}

} // namespace quorvel::shells
