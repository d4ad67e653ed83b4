// Measures texts with the fonts that paint them.
#pragma once

#include <memory>

#include "freedesktop/text/text_lines.h"
#include "platform/text_measurer.h"

namespace quorvel::freedesktop {

// Uses the lines that are painted, so that a text fits its measured size.
class PangoTextMeasurer final : public platform::TextMeasurer {
public:
    explicit PangoTextMeasurer(std::shared_ptr<TextLines> lines);

    platform::CGSize sizeWithFont(std::string_view text, const platform::UIFont& font) override;

private:
    std::shared_ptr<TextLines> m_lines;
};

} // namespace quorvel::freedesktop
