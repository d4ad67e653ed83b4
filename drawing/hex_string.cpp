#include "drawing/hex_string.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>

#include "platform/cg_color.h"

namespace quorvel {

using namespace platform;

namespace {

// A fraction is cut off; a number out of range gives the nearer end of it, and NaN gives 0.
std::int32_t truncated(CGFloat number) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(number)) {
        return 0;
    }
    return static_cast<std::int32_t>(std::clamp<CGFloat>(number, Limits::min(), Limits::max()));
}

std::uint32_t channel(const CGColor& color, std::size_t index) {
    const CGFloat component = index < color.components.size() ? color.components[index] : 0;
    return static_cast<std::uint32_t>(truncated(component * 255.0));
}

} // namespace

std::string hexStringOfColor(const CGColor& color) {
    std::array<char, sizeof("#FFFFFFFFFFFFFFFFFFFFFFFF")> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", channel(color, 0), channel(color, 1),
                  channel(color, 2));
    return text.data();
}

} // namespace quorvel
