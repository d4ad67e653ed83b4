// One row of a table: a content view above the separator line.
#pragma once

#include <optional>
#include <string>

#include "platform/ui/ui_view.h"

namespace quorvel::platform {

enum class UITableViewCellStyle { defaultStyle = 0 };

// The line below a row, inside the cell at its bottom.
struct UITableViewCellSeparator {
    UIColor color;
    UIEdgeInsets inset;    // left and right count
    CGFloat thickness = 1; // points
    bool isPainted = true; // false: only takes its place
    bool operator==(const UITableViewCellSeparator&) const = default;
};

class UITableViewCell : public UIView {
public:
    // Without an identifier the cell is never reused. Starts 320 by 44 points, like its content.
    explicit UITableViewCell(UITableViewCellStyle style = UITableViewCellStyle::defaultStyle,
                             std::optional<std::string> reuseIdentifier = std::nullopt);

    std::string_view className() const override { return "UITableViewCell"; }

    UITableViewCellStyle style() const { return m_style; }
    const std::optional<std::string>& reuseIdentifier() const { return m_reuseIdentifier; }
    const std::shared_ptr<UIView>& contentView() const { return m_contentView; }

    // Gives the content view the cell's size, less the separator.
    void layoutSubviews() override;

    // Set by the table. The cell paints the line, so that its own background cannot hide it.
    const std::optional<UITableViewCellSeparator>& separator() const { return m_separator; }
    void setSeparator(const std::optional<UITableViewCellSeparator>& separator);

    void drawRect(GraphicsContext& context) override; // the separator

private:
    UITableViewCellStyle m_style;
    std::optional<std::string> m_reuseIdentifier;
    std::shared_ptr<UIView> m_contentView;
    std::optional<UITableViewCellSeparator> m_separator;
};

// Paints the line inside a row's rectangle, one device pixel high.
void drawSeparator(GraphicsContext& context, const UITableViewCellSeparator& separator,
                   const CGRect& row);

} // namespace quorvel::platform
