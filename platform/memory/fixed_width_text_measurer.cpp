#include "platform/memory/fixed_width_text_measurer.h"

#include <algorithm>

namespace quorvel::platform::memory {

CGSize FixedWidthTextMeasurer::sizeWithFont(std::string_view text, const UIFont& font) {
    ++calls;
    if (text.empty() || !(font.pointSize > 0)) {
        return {};
    }
    const auto codePoints = std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    });
    return {static_cast<CGFloat>(codePoints) * widthRatio * font.pointSize,
            lineHeightRatio * font.pointSize};
}

} // namespace quorvel::platform::memory
