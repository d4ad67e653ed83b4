// The agenda: a view that loads the settings, gathers the events and shows them in a table, whose
// data source and delegate it is.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "agenda/event_gathering.h"
#include "cell/qvl_ui_table_view_cell.h"
#include "platform/platform.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_view.h"

namespace quorvel::platform {
struct CGColor;
class UIImageView;
} // namespace quorvel::platform

namespace quorvel {

// Refreshes only when a load is called. Always made with std::make_shared.
class QuorvelView : public platform::UIView,
                    public platform::UITableViewDataSource,
                    public platform::UITableViewDelegate {
public:
    // Shows nothing yet. The services outlive the view.
    QuorvelView(const platform::Platform& platform, const platform::CGRect& frame);
    ~QuorvelView() override;

    std::string_view className() const override { return "QuorvelView"; }

    // A picture over the table, two points in from the left and the right; null takes it away.
    void setBackgroundImage(const std::shared_ptr<const platform::UIImage>& image);
    void layoutSubviews() override;

    // Loads the settings, makes a table and fills it. A second call makes another table over the
    // first.
    void loadFullView();
    void viewWillAppear();
    // Loads the settings again and fills the table again.
    void reloadItems();

    void loadPreferences();
    platform::NSDate endOfDay(platform::NSDate date) const;
    EventRecords getCalendarEventsEK() const;
    // "#RRGGBB". Logs the call and its result.
    std::string hexStringForColor(const platform::CGColor& color) const;
    // Null: no icon. Throws std::out_of_range where a dot is wanted for a row that is not there.
    std::shared_ptr<const platform::UIImage> getIconForItemNumber(std::int64_t itemNumber) const;

    platform::NSInteger numberOfSectionsInTableView(platform::UITableView* tableView) override;
    platform::NSInteger numberOfRowsInSection(platform::UITableView* tableView,
                                              platform::NSInteger section) override;
    // A table of an earlier load may still ask for rows that no longer exist: those have no height
    // and no cell.
    platform::CGFloat heightForRowAtIndexPath(platform::UITableView* tableView,
                                              const platform::NSIndexPath& indexPath) override;
    std::shared_ptr<platform::UITableViewCell>
    cellForRowAtIndexPath(platform::UITableView* tableView,
                          const platform::NSIndexPath& indexPath) override;

    // Runs the swipe action where a row was pulled far enough to the right; nothing happens where
    // the row no longer exists.
    void scrollViewDidEndDragging(platform::UIScrollView* scrollView, bool willDecelerate) override;

    platform::NSDate dateWithZeroTimeFromDate(platform::NSDate date) const;
    std::string createPrettyDateFrom(platform::NSDate date, bool isAllDay) const;
    // The sum of all row heights in points; -1 where there are no rows.
    platform::CGFloat totalItemsHeight();

    // The events shown, one a row; never null. A load replaces the list and leaves the old one
    // unchanged to its other owners.
    const SharedEventRecords& items() const { return m_items; }
    // Shares the list. Null counts as an empty one.
    void setItems(SharedEventRecords items);

    std::int64_t swipeAction() const { return m_swipeAction; }                      // 0 to 3
    const std::shared_ptr<const platform::UIImage>& icon() const { return m_icon; } // may be null
    // Null before loadFullView.
    const std::shared_ptr<platform::UITableView>& itemsTableView() const {
        return m_itemsTableView;
    }

    std::vector<std::string_view> keys() const override;
    platform::KeyValue valueForKey(std::string_view key) const override;

private:
    // Null where no item has that row.
    std::shared_ptr<const EKEventQRV> itemAtRow(std::int64_t row) const;
    // Absent where the event has no start.
    std::optional<std::string> captionOf(const EKEventQRV& event) const;
    std::vector<std::string> captions() const;
    std::shared_ptr<QVL_UITableViewCell> reusableOrNewCell(platform::UITableView& tableView);
    void createTable();
    void applySeparatorStyle();
    void fillTable();
    void dropBackgroundImageView();
    std::shared_ptr<QuorvelView> sharedFromThis();

    // References: the host owns the services.
    platform::Platform m_platform;
    std::shared_ptr<platform::UIImageView> m_backgroundImageView; // null without a picture
    std::shared_ptr<const platform::UIImage> m_icon;
    std::int64_t m_swipeAction = 0;
    std::vector<std::string> m_chosenColors; // keys of settings; empty before the first load
    // Part of the class's declared shape only. The process-wide values of these names are in use.
    [[maybe_unused]] platform::CGFloat m_cellWithoutSubtitleHeight = 0;
    [[maybe_unused]] platform::CGFloat m_cellWithSubtitleHeight = 0;
    std::shared_ptr<platform::UITableView> m_itemsTableView;
    SharedEventRecords m_items;
};

} // namespace quorvel
