// Sizes of texts that nobody will see, for hosts that print.
#pragma once

#include <string_view>

#include "platform/text_measurer.h"

namespace quorvel::freedesktop {

// Reads no fonts: each character is half as wide as the font is high.
class RoughTextMeasurer final : public platform::TextMeasurer {
public:
    platform::CGSize sizeWithFont(std::string_view text, const platform::UIFont& font) override;
};

} // namespace quorvel::freedesktop
