#include "agenda/row_cell.h"

#include "cell/row_metrics.h"
#include "platform/ui/ui_image_view.h"
#include "platform/ui/ui_label.h"

namespace quorvel {

using namespace platform;

namespace {

void addScrollView(QVL_UITableViewCell& cell, const std::shared_ptr<UIScrollViewDelegate>& delegate,
                   bool draggable) {
    UIView& contentView = *cell.contentView();
    const auto scrollView = std::make_shared<UIScrollView>(contentView.bounds());
    cell.setScrollView(scrollView);
    scrollView->setContentSize(contentView.frame().size);
    scrollView->setAlwaysBounceHorizontal(true);
    scrollView->setDelegate(delegate);
    contentView.insertSubview(scrollView, 0);
    if (!draggable) {
        scrollView->setUserInteractionEnabled(false);
    }
}

std::shared_ptr<UILabel> addLabel(UIView& view, UILabelRole role) {
    auto label = std::make_shared<UILabel>(CGRect{});
    label->setRole(role);
    view.addSubview(label);
    return label;
}

void addIconView(QVL_UITableViewCell& cell) {
    const auto iconView = std::make_shared<UIImageView>(rowIconFrame);
    iconView->setContentMode(UIViewContentMode::scaleAspectFit);
    cell.setIconView(iconView);
    cell.scrollView()->addSubview(iconView);
}

// The plain text comes last: it drops the attributes, and the colour stays.
void showTitle(UILabel& label, const std::optional<std::string>& title) {
    if (title) {
        label.setAttributedText(NSAttributedString{*title, label.textColor()});
    } else {
        label.setAttributedText(std::nullopt);
    }
    label.setText(title);
}

} // namespace

std::shared_ptr<QVL_UITableViewCell>
makeRowCell(TextMeasurer& textMeasurer, const std::shared_ptr<UIScrollViewDelegate>& delegate,
            bool draggable) {
    auto cell = std::make_shared<QVL_UITableViewCell>(
        textMeasurer, UITableViewCellStyle::defaultStyle, std::string(rowReuseIdentifier));
    addScrollView(*cell, delegate, draggable);
    UIScrollView& scrollView = *cell->scrollView();
    cell->setPrimaryLabel(addLabel(scrollView, UILabelRole::title));
    cell->setSubtitleLabel(addLabel(scrollView, UILabelRole::subtitle));
    cell->setRelevanceDateLabel(addLabel(scrollView, UILabelRole::caption));
    addIconView(*cell);
    cell->setBackgroundColor(UIColor::clearColor());
    return cell;
}

void showEvent(QVL_UITableViewCell& cell, const EKEventQRV& event, std::int64_t row) {
    cell.scrollView()->setTag(row);
    cell.scrollView()->setScrollEnabled(event.URL().has_value());
    showTitle(*cell.primaryLabel(), event.title());
}

void showLocation(QVL_UITableViewCell& cell, const std::optional<std::string>& location,
                  bool displayLocation) {
    if (location && displayLocation) {
        cell.subtitleLabel()->setText(location);
    }
}

} // namespace quorvel
