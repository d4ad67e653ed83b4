#include "shells/window/layer_options.h"

#include <algorithm>

namespace quorvel::window {

using platform::CGFloat;
using platform::CGRect;
using platform::CGSize;

namespace {

struct Span {
    CGFloat start = 0;
    CGFloat length = 0;
};

// One dimension of the frame: `area` is the output's, shortened by the margins of anchored edges.
Span placed(Span area, CGFloat length, bool isAtStart, bool isAtEnd) {
    if (isAtStart && isAtEnd) {
        return {area.start, std::max<CGFloat>(area.length, 1)};
    }
    if (isAtStart) {
        return {area.start, length};
    }
    const CGFloat rest = area.length - length;
    return {area.start + (isAtEnd ? rest : rest / 2), length};
}

Span shortened(Span area, CGFloat atStart, CGFloat atEnd) {
    return {area.start + atStart, area.length - atStart - atEnd};
}

// The output's area without the margins of the edges at which the layer lies.
Span horizontalSpan(const LayerOptions& options, Span area) {
    const Edges& anchor = options.anchor;
    return shortened(area, anchor.left ? options.margins.left : 0,
                     anchor.right ? options.margins.right : 0);
}

Span verticalSpan(const LayerOptions& options, Span area) {
    const Edges& anchor = options.anchor;
    return shortened(area, anchor.top ? options.margins.top : 0,
                     anchor.bottom ? options.margins.bottom : 0);
}

} // namespace

CGRect layerFrame(const LayerOptions& options, CGRect area, CGSize size) {
    const Edges& anchor = options.anchor;
    const Span x = placed(horizontalSpan(options, {area.origin.x, area.size.width}), size.width,
                          anchor.left, anchor.right);
    const Span y = placed(verticalSpan(options, {area.origin.y, area.size.height}), size.height,
                          anchor.top, anchor.bottom);
    return platform::CGRectMake(x.start, y.start, x.length, y.length);
}

CGFloat heightBetweenMargins(const LayerOptions& options, CGFloat height) {
    return std::max<CGFloat>(verticalSpan(options, {0, height}).length, 1);
}

} // namespace quorvel::window
