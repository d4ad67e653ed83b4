#include "freedesktop/text/pango_text_measurer.h"

#include <utility>

namespace quorvel::freedesktop {

PangoTextMeasurer::PangoTextMeasurer(std::shared_ptr<TextLines> lines)
    : m_lines(std::move(lines)) {}

platform::CGSize PangoTextMeasurer::sizeWithFont(std::string_view text,
                                                 const platform::UIFont& font) {
    return m_lines->size(text, font);
}

} // namespace quorvel::freedesktop
