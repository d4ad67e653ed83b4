// The text measurer of the Linux platform.
#pragma once

#include <memory>

#include "freedesktop/text/text_lines.h"
#include "platform/text_measurer.h"

namespace quorvel::freedesktop {

// Measures with the lines that are painted, so that what was measured fits.
class PangoTextMeasurer final : public platform::TextMeasurer {
public:
    explicit PangoTextMeasurer(std::shared_ptr<TextLines> lines);

    platform::CGSize sizeWithFont(std::string_view text, const platform::UIFont& font) override;

private:
    std::shared_ptr<TextLines> m_lines;
};

} // namespace quorvel::freedesktop
