// Estimates text sizes, for hosts that show no texts.
#pragma once

#include <string_view>

#include "platform/text_measurer.h"

namespace quorvel::freedesktop {

// Loads no fonts: each byte is half as wide as the font size.
class RoughTextMeasurer final : public platform::TextMeasurer {
public:
    platform::CGSize sizeWithFont(std::string_view text, const platform::UIFont& font) override;
};

} // namespace quorvel::freedesktop
