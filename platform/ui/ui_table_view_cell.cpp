#include "platform/ui/ui_table_view_cell.h"

#include <algorithm>
#include <utility>

namespace quorvel::platform {

namespace {

constexpr CGRect initialFrame = CGRectMake(0, 0, 320, 44);

} // namespace

UITableViewCell::UITableViewCell(UITableViewCellStyle style,
                                 std::optional<std::string> reuseIdentifier)
    : UIView(initialFrame)
    , m_style(style)
    , m_reuseIdentifier(std::move(reuseIdentifier))
    , m_contentView(std::make_shared<UIView>(initialFrame)) {
    addSubview(m_contentView);
}

void UITableViewCell::layoutSubviews() {
    const CGSize size = bounds().size;
    const CGFloat line = m_separator ? m_separator->thickness : 0;
    m_contentView->setFrame(CGRectMake(0, 0, size.width, std::max(size.height - line, 0.0)));
}

void UITableViewCell::setSeparator(const std::optional<UITableViewCellSeparator>& separator) {
    if (m_separator != separator) {
        m_separator = separator;
        setNeedsLayout();
    }
}

void UITableViewCell::drawRect(GraphicsContext& context) {
    if (m_separator && m_separator->isPainted) {
        drawSeparator(context, *m_separator, bounds());
    }
}

void drawSeparator(GraphicsContext& context, const UITableViewCellSeparator& separator,
                   const CGRect& row) {
    const CGFloat width = row.size.width - separator.inset.left - separator.inset.right;
    if (width > 0) {
        context.setFillColor(separator.color);
        context.fillHairline(CGRectMake(row.origin.x + separator.inset.left,
                                        CGRectGetMaxY(row) - separator.thickness, width,
                                        separator.thickness));
    }
}

} // namespace quorvel::platform
