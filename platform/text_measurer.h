// The size of a text on one line.
#pragma once

#include <string_view>

#include "platform/geometry.h"
#include "platform/ui_font.h"

namespace quorvel::platform {

class TextMeasurer {
public:
    virtual ~TextMeasurer() = default;
    // Width and line height in points, of unbounded width, not rounded. `text` is UTF-8 and may be
    // damaged; the empty text, like a font size of 0 or less, is 0 by 0.
    virtual CGSize sizeWithFont(std::string_view text, const UIFont& font) = 0;
};

} // namespace quorvel::platform
