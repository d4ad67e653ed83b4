// Shows one line of text, vertically centred and truncated at the end.
#pragma once

#include <optional>
#include <string>

#include "platform/attributed_string.h"
#include "platform/ui/ui_label_colors.h"
#include "platform/ui/ui_view.h"
#include "platform/ui_font.h"

namespace quorvel::platform {

// User interaction is disabled by default.
class UILabel : public UIView {
public:
    explicit UILabel(const CGRect& frame = {});

    std::string_view className() const override { return "UILabel"; }

    // UTF-8; absent until set. Setting the plain text drops the attributed one.
    const std::optional<std::string>& text() const { return m_text; }
    void setText(const std::optional<std::string>& text);
    // Setting an attributed text gives the label its text and its colour, which stay when the plain
    // text is set afterwards.
    const std::optional<NSAttributedString>& attributedText() const { return m_attributedText; }
    void setAttributedText(const std::optional<NSAttributedString>& text);

    const UIFont& font() const { return m_font; } // system font of 17 points until set
    void setFont(const UIFont& font) { m_font = font; }
    const UIColor& textColor() const { return m_textColor; }
    void setTextColor(const std::optional<UIColor>& color); // absent: black

    // A window that has a colour for the role paints the text in it instead of the label's colour.
    UILabelRole role() const { return m_role; }
    void setRole(UILabelRole role) { m_role = role; }

    void drawRect(GraphicsContext& context) override;

private:
    UIColor paintedColor();

    std::optional<std::string> m_text;
    std::optional<NSAttributedString> m_attributedText;
    UIFont m_font = UIFont::systemFontOfSize(17);
    UIColor m_textColor = UIColor::blackColor();
    UILabelRole m_role = UILabelRole::other;
};

} // namespace quorvel::platform
