#include "platform/ui/ui_label.h"

#include "platform/ui/ui_window.h"

namespace quorvel::platform {

UILabel::UILabel(const CGRect& frame)
    : UIView(frame) {
    setUserInteractionEnabled(false);
}

void UILabel::setText(const std::optional<std::string>& text) {
    m_text = text;
    m_attributedText.reset();
}

void UILabel::setAttributedText(const std::optional<NSAttributedString>& text) {
    m_attributedText = text;
    m_text.reset();
    if (m_attributedText) {
        m_text = m_attributedText->string;
        m_textColor = m_attributedText->foregroundColor.value_or(m_textColor);
    }
}

void UILabel::setTextColor(const std::optional<UIColor>& color) {
    m_textColor = color.value_or(UIColor::blackColor());
    if (m_attributedText) {
        m_attributedText->foregroundColor = m_textColor;
    }
}

UIColor UILabel::paintedColor() {
    const UIWindow* top = window();
    if (const auto color = top != nullptr ? top->labelColors().of(m_role) : std::nullopt) {
        return *color;
    }
    const bool hasOwnColor = m_attributedText && m_attributedText->foregroundColor;
    return hasOwnColor ? *m_attributedText->foregroundColor : m_textColor;
}

void UILabel::drawRect(GraphicsContext& context) {
    if (m_text && !m_text->empty()) {
        context.drawText(*m_text, m_font, paintedColor(), bounds());
    }
}

} // namespace quorvel::platform
