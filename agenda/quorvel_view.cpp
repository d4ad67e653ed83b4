#include "agenda/quorvel_view.h"

#include <stdexcept>
#include <utility>

#include "agenda/date_caption.h"
#include "agenda/days.h"
#include "agenda/row_cell.h"
#include "agenda/row_height.h"
#include "agenda/row_icon.h"
#include "agenda/settings.h"
#include "agenda/settings_loading.h"
#include "agenda/settings_store.h"
#include "agenda/swipe_action.h"
#include "cell/key_values.h"
#include "drawing/colored_dot.h"
#include "drawing/hex_string.h"
#include "platform/cg_color.h"
#include "platform/system_log.h"
#include "platform/ui/ui_image_view.h"
#include "platform/ui/ui_label.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr CGFloat backgroundInset = 2;

} // namespace

QuorvelView::QuorvelView(const Platform& platform, const CGRect& frame)
    : UIView(frame)
    , m_platform(platform)
    , m_items(std::make_shared<const EventRecords>()) {}

// The members go in the reverse order of their declaration: items, table, icon, background.
QuorvelView::~QuorvelView() {
    dropBackgroundImageView();
}

// Making, filling and refilling.

void QuorvelView::setBackgroundImage(const std::shared_ptr<const UIImage>& image) {
    if (!image) {
        dropBackgroundImageView();
        return;
    }
    if (!m_backgroundImageView) {
        m_backgroundImageView = std::make_shared<UIImageView>();
        addSubview(m_backgroundImageView);
    }
    m_backgroundImageView->setImage(image);
}

void QuorvelView::dropBackgroundImageView() {
    if (m_backgroundImageView) {
        m_backgroundImageView->removeFromSuperview();
        m_backgroundImageView.reset();
    }
}

void QuorvelView::layoutSubviews() {
    UIView::layoutSubviews();
    if (m_backgroundImageView) {
        m_backgroundImageView->setFrame(CGRectInset(bounds(), backgroundInset, 0));
    }
}

void QuorvelView::loadFullView() {
    // Before there is a table: limitMaxHeight reaches this one only with the first reload.
    loadPreferences();
    createTable();
    applySeparatorStyle();
    fillTable();
}

void QuorvelView::createTable() {
    const auto self = sharedFromThis();
    m_itemsTableView = std::make_shared<UITableView>(bounds(), UITableViewStyle::plain);
    m_itemsTableView->setDelegate(std::weak_ptr<UITableViewDelegate>(self));
    m_itemsTableView->setDataSource(self);
    m_itemsTableView->setAutoresizingMask(UIViewAutoresizingFlexibleWidth |
                                          UIViewAutoresizingFlexibleHeight);
    m_itemsTableView->setBackgroundColor(UIColor::clearColor());
    addSubview(m_itemsTableView);
}

void QuorvelView::applySeparatorStyle() {
    if (m_itemsTableView) {
        m_itemsTableView->setSeparatorStyle(settings::showSeparatorLines
                                                ? UITableViewCellSeparatorStyle::singleLine
                                                : UITableViewCellSeparatorStyle::none);
    }
}

void QuorvelView::fillTable() {
    setItems(std::make_shared<const EventRecords>(getCalendarEventsEK()));
    if (m_itemsTableView) {
        m_itemsTableView->reloadData();
    }
}

void QuorvelView::setItems(SharedEventRecords items) {
    m_items = items ? std::move(items) : std::make_shared<const EventRecords>();
}

void QuorvelView::viewWillAppear() {
    reloadItems();
}

void QuorvelView::reloadItems() {
    loadPreferences();
    applySeparatorStyle();
    fillTable();
}

void QuorvelView::loadPreferences() {
    const auto dictionary = readSettings(m_platform.preferences, m_platform.systemLog);
    if (!dictionary) {
        return;
    }
    loadLimitMaxHeight(*dictionary);
    if (m_itemsTableView) {
        m_itemsTableView->setScrollEnabled(settings::limitMaxHeight);
    }
    loadListSettings(*dictionary);
    m_swipeAction = loadedSwipeAction(*dictionary);
    loadRowSettings(*dictionary);
    m_chosenColors = chosenColors(*dictionary);
    loadGatheringSettings(*dictionary);
    loadIconFile(*dictionary);
    m_icon = loadRowIcon(*settings::iconFile, m_platform, m_icon);
}

NSDate QuorvelView::endOfDay(NSDate date) const {
    return lastSecondOfDay(m_platform.dateServices, date);
}

EventRecords QuorvelView::getCalendarEventsEK() const {
    return gatherEvents(m_platform);
}

std::string QuorvelView::hexStringForColor(const CGColor& color) const {
    m_platform.systemLog.log("QRV: hexStringForColor");
    std::string text = hexStringOfColor(color);
    m_platform.systemLog.log("QRV: got calendar color string: " + text);
    return text;
}

// The rows.

std::shared_ptr<const UIImage> QuorvelView::getIconForItemNumber(std::int64_t itemNumber) const {
    switch (rowIconKind(settings::iconFile)) {
    case RowIconKind::none:
        return nullptr;
    case RowIconKind::picture:
        return m_icon;
    case RowIconKind::dot:
        break;
    }
    const auto event = itemAtRow(itemNumber);
    if (!event) {
        throw std::out_of_range("QuorvelView: there is no such row");
    }
    return drawColoredDot(m_platform.graphicsContexts, event->calendarColor(),
                          dotDiameter(settings::iconFile));
}

NSInteger QuorvelView::numberOfSectionsInTableView(UITableView*) {
    return 1;
}

NSInteger QuorvelView::numberOfRowsInSection(UITableView*, NSInteger) {
    return static_cast<NSInteger>(m_items->size());
}

CGFloat QuorvelView::heightForRowAtIndexPath(UITableView*, const NSIndexPath& indexPath) {
    const auto event = itemAtRow(indexPath.row);
    if (!event) {
        return 0;
    }
    const CGFloat titleLine = lineHeight(m_platform.textMeasurer, settings::textSize);
    const CGFloat locationLine = lineHeight(m_platform.textMeasurer, settings::subtitleTextSize);
    return rowHeight(
        titleLine, locationLine,
        hasLocationLine(event->location(), settings::displayLocation, settings::sameHeightRows));
}

std::shared_ptr<UITableViewCell> QuorvelView::cellForRowAtIndexPath(UITableView* tableView,
                                                                    const NSIndexPath& indexPath) {
    const auto event = itemAtRow(indexPath.row);
    if (!event) {
        return nullptr;
    }
    auto cell = reusableOrNewCell(*tableView);
    showEvent(*cell, *event, indexPath.row);
    showLocation(*cell, event->location(), settings::displayLocation);
    cell->relevanceDateLabel()->setText(captionOf(*event));
    cell->iconView()->setImage(getIconForItemNumber(indexPath.row));
    cell->setCalendarColor(event->calendarColor());
    return cell;
}

void QuorvelView::scrollViewDidEndDragging(UIScrollView* scrollView, bool) {
    if (!isPulledFarEnough(scrollView->contentOffset())) {
        return;
    }
    if (const auto event = itemAtRow(scrollView->tag())) {
        runSwipeAction(static_cast<SwipeAction>(m_swipeAction), *event, m_platform);
    }
}

// Whether a row can be dragged is settled when its cell is made; a later change of the swipe action
// reaches only the cells made after it.
std::shared_ptr<QVL_UITableViewCell> QuorvelView::reusableOrNewCell(UITableView& tableView) {
    auto cell = std::dynamic_pointer_cast<QVL_UITableViewCell>(
        tableView.dequeueReusableCellWithIdentifier(rowReuseIdentifier));
    return cell ? cell : makeRowCell(m_platform.textMeasurer, sharedFromThis(), m_swipeAction != 0);
}

NSDate QuorvelView::dateWithZeroTimeFromDate(NSDate date) const {
    return startOfDay(m_platform.dateServices, date);
}

std::string QuorvelView::createPrettyDateFrom(NSDate date, bool isAllDay) const {
    return dateCaption(m_platform.dateServices, m_platform.clock, date, isAllDay);
}

CGFloat QuorvelView::totalItemsHeight() {
    if (m_items->empty()) {
        return heightWithoutRows;
    }
    CGFloat total = 0;
    for (std::size_t row = 0; row < m_items->size(); ++row) {
        total += heightForRowAtIndexPath(m_itemsTableView.get(), {0, static_cast<NSInteger>(row)});
    }
    return total;
}

std::shared_ptr<const EKEventQRV> QuorvelView::itemAtRow(std::int64_t row) const {
    const bool isThere = row >= 0 && std::cmp_less(row, m_items->size());
    return isThere ? (*m_items)[static_cast<std::size_t>(row)] : nullptr;
}

std::optional<std::string> QuorvelView::captionOf(const EKEventQRV& event) const {
    if (!event.startDate()) {
        return std::nullopt;
    }
    return createPrettyDateFrom(*event.startDate(), event.isAllDay());
}

std::vector<std::string> QuorvelView::captions() const {
    std::vector<std::string> captions;
    captions.reserve(m_items->size());
    for (const auto& event : *m_items) {
        captions.push_back(captionOf(*event).value_or(""));
    }
    return captions;
}

std::shared_ptr<QuorvelView> QuorvelView::sharedFromThis() {
    return std::static_pointer_cast<QuorvelView>(shared_from_this());
}

// Values by name.

std::vector<std::string_view> QuorvelView::keys() const {
    return {"swipeAction", "icon", "items", "captions", "swipeActionHasEffect", "chosenColors"};
}

KeyValue QuorvelView::valueForKey(std::string_view key) const {
    if (key == "swipeAction") {
        return m_swipeAction;
    }
    if (key == "icon") {
        return keyValueOfObject<const UIImage>(m_icon);
    }
    if (key == "items") {
        return std::vector<std::shared_ptr<const KeyValueCoding>>(m_items->begin(), m_items->end());
    }
    if (key == "captions") {
        return captions();
    }
    if (key == "swipeActionHasEffect") {
        return hasEffect(static_cast<SwipeAction>(m_swipeAction),
                         settings::customLaunchAppBundleID);
    }
    if (key == "chosenColors") {
        return m_chosenColors;
    }
    return UIView::valueForKey(key);
}

} // namespace quorvel
