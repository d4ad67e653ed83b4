// Text in which every character is as wide as every other, so that sizes are plain numbers.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/text_measurer.h"

namespace quorvel::platform::memory {

// Half the font size for each code point, and lines of 1.25 times the font size. In damaged UTF-8
// every byte that does not continue a sequence counts.
class FixedWidthTextMeasurer : public TextMeasurer {
public:
    CGSize sizeWithFont(std::string_view text, const UIFont& font) override;

    CGFloat widthRatio = 0.5;
    CGFloat lineHeightRatio = 1.25;
    std::size_t calls = 0;
};

} // namespace quorvel::platform::memory
