// Points, sizes and rectangles, in points, with y growing downwards.
#pragma once

#include <algorithm>

namespace quorvel::platform {

using CGFloat = double;

struct CGPoint {
    CGFloat x = 0;
    CGFloat y = 0;
    bool operator==(const CGPoint&) const = default;
};

struct CGSize {
    CGFloat width = 0;
    CGFloat height = 0;
    bool operator==(const CGSize&) const = default;
};

// A width or height may be below zero; such a rectangle contains and intersects nothing.
struct CGRect {
    CGPoint origin;
    CGSize size;
    bool operator==(const CGRect&) const = default;
};

constexpr CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return {{x, y}, {width, height}};
}

constexpr CGFloat CGRectGetMinX(const CGRect& rect) {
    return rect.origin.x;
}
constexpr CGFloat CGRectGetMinY(const CGRect& rect) {
    return rect.origin.y;
}
constexpr CGFloat CGRectGetMaxX(const CGRect& rect) {
    return rect.origin.x + rect.size.width;
}
constexpr CGFloat CGRectGetMaxY(const CGRect& rect) {
    return rect.origin.y + rect.size.height;
}
constexpr CGFloat CGRectGetWidth(const CGRect& rect) {
    return rect.size.width;
}
constexpr CGFloat CGRectGetHeight(const CGRect& rect) {
    return rect.size.height;
}

constexpr CGRect CGRectInset(const CGRect& rect, CGFloat dx, CGFloat dy) {
    return {{rect.origin.x + dx, rect.origin.y + dy},
            {rect.size.width - 2 * dx, rect.size.height - 2 * dy}};
}

// The right and the bottom edge do not belong to the rectangle.
constexpr bool CGRectContainsPoint(const CGRect& rect, const CGPoint& point) {
    return point.x >= CGRectGetMinX(rect) && point.x < CGRectGetMaxX(rect) &&
           point.y >= CGRectGetMinY(rect) && point.y < CGRectGetMaxY(rect);
}

struct UIEdgeInsets {
    CGFloat top = 0;
    CGFloat left = 0;
    CGFloat bottom = 0;
    CGFloat right = 0;
    bool operator==(const UIEdgeInsets&) const = default;
};

} // namespace quorvel::platform
