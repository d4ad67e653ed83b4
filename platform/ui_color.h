// A colour as four components from 0 to 1; values outside are not clamped.
#pragma once

#include "platform/geometry.h"

namespace quorvel::platform {

struct UIColor {
    CGFloat red = 0;
    CGFloat green = 0;
    CGFloat blue = 0;
    CGFloat alpha = 1;
    bool operator==(const UIColor&) const = default;

    static constexpr UIColor blackColor() { return {0, 0, 0, 1}; }
    static constexpr UIColor whiteColor() { return {1, 1, 1, 1}; }
    static constexpr UIColor grayColor() { return {0.5, 0.5, 0.5, 1}; }
    static constexpr UIColor redColor() { return {1, 0, 0, 1}; }
    static constexpr UIColor greenColor() { return {0, 1, 0, 1}; }
    static constexpr UIColor blueColor() { return {0, 0, 1, 1}; }
    static constexpr UIColor yellowColor() { return {1, 1, 0, 1}; }
    static constexpr UIColor orangeColor() { return {1, 0.5, 0, 1}; }
    static constexpr UIColor purpleColor() { return {0.5, 0, 0.5, 1}; }
    static constexpr UIColor brownColor() { return {0.6, 0.4, 0.2, 1}; }
    static constexpr UIColor clearColor() { return {0, 0, 0, 0}; }
};

} // namespace quorvel::platform
