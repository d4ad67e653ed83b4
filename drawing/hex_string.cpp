#include "drawing/hex_string.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "platform/cg_color.h"
#include "platform/property_list.h"

namespace quorvel {

using namespace platform;

namespace {

std::uint32_t channel(const CGColor& color, std::size_t index) {
    const CGFloat component = index < color.components.size() ? color.components[index] : 0;
    return static_cast<std::uint32_t>(intValue({component * 255.0}));
}

} // namespace

std::string hexStringOfColor(const CGColor& color) {
    std::array<char, sizeof("#FFFFFFFFFFFFFFFFFFFFFFFF")> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", channel(color, 0), channel(color, 1),
                  channel(color, 2));
    return text.data();
}

} // namespace quorvel
