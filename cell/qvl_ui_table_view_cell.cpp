#include "cell/qvl_ui_table_view_cell.h"

#include "cell/key_values.h"
#include "cell/row_layout.h"
#include "cell/row_settings.h"
#include "platform/text_measurer.h"
#include "platform/ui/ui_image_view.h"
#include "platform/ui/ui_label.h"
#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_table_view.h"

namespace quorvel {

using namespace platform;

namespace {

// The face of the font stays the same.
void setFontSize(UILabel& label, std::int64_t size) {
    label.setFont(label.font().fontWithSize(static_cast<CGFloat>(size)));
}

void styleLabel(const std::shared_ptr<UILabel>& label, std::int64_t fontSize,
                const std::optional<UIColor>& color) {
    if (label) {
        setFontSize(*label, fontSize);
        label->setTextColor(color);
    }
}

CGSize measuredSize(TextMeasurer& textMeasurer, const std::shared_ptr<UILabel>& label) {
    if (!label || !label->text()) {
        return {};
    }
    return textMeasurer.sizeWithFont(*label->text(), label->font());
}

void place(const std::shared_ptr<UILabel>& label, const CGRect& frame) {
    if (label) {
        label->setFrame(frame);
    }
}

} // namespace

QVL_UITableViewCell::QVL_UITableViewCell(TextMeasurer& textMeasurer, UITableViewCellStyle style,
                                         std::optional<std::string> reuseIdentifier)
    : UITableViewCell(style, std::move(reuseIdentifier))
    , m_textMeasurer(textMeasurer) {}

UITableView* QVL_UITableViewCell::parentTableView() const {
    for (UIView* view = superview(); view != nullptr; view = view->superview()) {
        if (auto* table = dynamic_cast<UITableView*>(view)) {
            return table;
        }
    }
    return nullptr;
}

void QVL_UITableViewCell::layoutSubviews() {
    UITableViewCell::layoutSubviews();
    fitScrollView();
    if (m_secondaryLabel) {
        m_secondaryLabel->setTextColor(UIColor::clearColor());
    }
    styleTitle();
    styleLabel(m_subtitleLabel, settings::subtitleTextSize, settings::subtitleTextColor);
    styleLabel(m_relevanceDateLabel, settings::dateTextSize, settings::dateTextColor);
    placeLabels();
}

// As large as its content: the layer never scrolls, it can only be pulled against its bounce.
void QVL_UITableViewCell::fitScrollView() {
    if (m_scrollView) {
        m_scrollView->setFrame(contentView()->bounds());
        m_scrollView->setContentSize(contentView()->frame().size);
    }
}

void QVL_UITableViewCell::styleTitle() {
    styleLabel(m_primaryLabel, settings::textSize,
               settings::titleColorSameAsCalendarColor ? m_calendarColor : settings::textColor);
    if (m_primaryLabel && m_primaryLabel->text()) {
        m_primaryLabel->setAttributedText(
            NSAttributedString{*m_primaryLabel->text(), m_primaryLabel->textColor()});
    }
}

void QVL_UITableViewCell::placeLabels() {
    RowMeasures measures;
    measures.date = measuredSize(m_textMeasurer, m_relevanceDateLabel);
    measures.title = measuredSize(m_textMeasurer, m_primaryLabel);
    measures.location = measuredSize(m_textMeasurer, m_subtitleLabel);
    measures.width = CGRectGetWidth(contentView()->frame());
    measures.rightAlignedDate = settings::rightAlignedDate;

    const RowFrames frames = layOutRow(measures);
    place(m_primaryLabel, frames.title);
    place(m_relevanceDateLabel, frames.date);
    place(m_subtitleLabel, frames.location);
    settings::cellWithoutSubtitleHeight = frames.heightWithoutLocation;
    settings::cellWithSubtitleHeight = frames.heightWithLocation;
}

std::vector<std::string_view> QVL_UITableViewCell::keys() const {
    return {"iconView",           "secondaryLabel", "subtitleLabel", "primaryLabel",
            "relevanceDateLabel", "scrollView",     "calendarColor"};
}

KeyValue QVL_UITableViewCell::valueForKey(std::string_view key) const {
    if (key == "iconView") {
        return keyValueOfObject<UIView>(m_iconView);
    }
    if (key == "secondaryLabel") {
        return keyValueOfObject<UIView>(m_secondaryLabel);
    }
    if (key == "subtitleLabel") {
        return keyValueOfObject<UIView>(m_subtitleLabel);
    }
    if (key == "primaryLabel") {
        return keyValueOfObject<UIView>(m_primaryLabel);
    }
    if (key == "relevanceDateLabel") {
        return keyValueOfObject<UIView>(m_relevanceDateLabel);
    }
    if (key == "scrollView") {
        return keyValueOfObject<UIView>(m_scrollView);
    }
    if (key == "calendarColor") {
        return keyValueOf(m_calendarColor);
    }
    return UITableViewCell::valueForKey(key);
}

} // namespace quorvel
