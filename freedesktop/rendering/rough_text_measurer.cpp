#include "freedesktop/rendering/rough_text_measurer.h"

namespace quorvel::freedesktop {

platform::CGSize RoughTextMeasurer::sizeWithFont(std::string_view text,
                                                 const platform::UIFont& font) {
    if (text.empty() || !(font.pointSize > 0)) {
        return {};
    }
    constexpr platform::CGFloat widthOfCharacter = 0.5; // of the font's size
    constexpr platform::CGFloat heightOfLine = 1.25;
    return {static_cast<platform::CGFloat>(text.size()) * widthOfCharacter * font.pointSize,
            heightOfLine * font.pointSize};
}

} // namespace quorvel::freedesktop
