// A table of rows below each other, with cells for visible rows only.
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/ns_index_path.h"
#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_table_view_cell.h"

namespace quorvel::platform {

class UITableView;

enum class UITableViewStyle { plain = 0 };
enum class UITableViewCellSeparatorStyle { none = 0, singleLine = 1 };

class UITableViewDataSource {
public:
    virtual ~UITableViewDataSource() = default;
    virtual NSInteger numberOfSectionsInTableView(UITableView*) { return 1; }
    virtual NSInteger numberOfRowsInSection(UITableView* tableView, NSInteger section) = 0;
    // Null: the row stays empty.
    virtual std::shared_ptr<UITableViewCell>
    cellForRowAtIndexPath(UITableView* tableView, const NSIndexPath& indexPath) = 0;
};

class UITableViewDelegate : public UIScrollViewDelegate {
public:
    // Points.
    virtual CGFloat heightForRowAtIndexPath(UITableView* tableView,
                                            const NSIndexPath& indexPath) = 0;
};

class UITableView : public UIScrollView {
public:
    UITableView(const CGRect& frame, UITableViewStyle style);

    std::string_view className() const override { return "UITableView"; }
    UITableViewStyle style() const { return m_style; }

    // Neither is owned. A table whose data source was destroyed does not change. After a change of
    // either, the next layout reloads.
    void setDataSource(std::weak_ptr<UITableViewDataSource> dataSource);
    std::shared_ptr<UITableViewDataSource> dataSource() const { return m_dataSource.lock(); }
    void setDelegate(std::weak_ptr<UITableViewDelegate> delegate);

    UITableViewCellSeparatorStyle separatorStyle() const { return m_separatorStyle; }
    void setSeparatorStyle(UITableViewCellSeparatorStyle style);
    const UIColor& separatorColor() const { return m_separatorColor; }
    void setSeparatorColor(const UIColor& color);
    const UIEdgeInsets& separatorInset() const { return m_separatorInset; }
    void setSeparatorInset(const UIEdgeInsets& inset);
    // Whether lines are painted below the last row too: its own, and those of the empty rows down
    // to the bottom. True by default. Without them the rows are as high as with them.
    bool paintsTrailingSeparators() const { return m_paintsTrailingSeparators; }
    void setPaintsTrailingSeparators(bool paints);
    // The height of rows without a delegate, from the next reload on, and of the empty rows below
    // the last one.
    CGFloat rowHeight() const { return m_rowHeight; }
    void setRowHeight(CGFloat height) { m_rowHeight = height; }

    // Queries the counts and the heights of all rows immediately, and cells at the next layout. A
    // height that is negative or NaN counts as 0. An offset past the new end is moved to the end.
    void reloadData();
    // The cell that has been unused for the longest time; null without an unused cell.
    std::shared_ptr<UITableViewCell> dequeueReusableCellWithIdentifier(std::string_view identifier);

    NSInteger numberOfSections() const;
    NSInteger numberOfRowsInSection(NSInteger section) const;
    std::vector<CGFloat> rowHeights() const; // of all rows, in order
    // The row's rectangle in the table's coordinates; empty for a row that does not exist.
    CGRect rectForRowAtIndexPath(const NSIndexPath& indexPath) const;
    // Null where the row has no cell now.
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(const NSIndexPath& indexPath) const;
    std::vector<std::shared_ptr<UITableViewCell>> visibleCells() const; // top down
    // Absent where the cell shows no row.
    std::optional<NSIndexPath> indexPathForCell(const UITableViewCell& cell) const;

    void layoutSubviews() override;
    void visibleAreaDidChange() override { setNeedsLayout(); }
    void drawRect(GraphicsContext& context) override; // the separators below the last row

private:
    using Cell = std::shared_ptr<UITableViewCell>;

    // The rows of all sections, one after the other.
    struct Rows {
        std::vector<std::size_t>
            sectionStarts; // the number of each section's first row, and the end
        std::vector<CGFloat> heights;
        std::vector<CGFloat> tops; // of each row, and the end

        CGFloat totalHeight() const { return tops.back(); }
    };
    struct RowRange {
        std::size_t first;
        std::size_t end;
    };

    Rows queryRows(UITableViewDataSource& source);
    CGFloat queryHeight(const NSIndexPath& indexPath);
    std::optional<std::size_t> rowNumber(const NSIndexPath& indexPath) const;
    NSIndexPath indexPathOfRow(std::size_t row) const;
    CGRect rowRect(std::size_t row) const;
    RowRange visibleRows() const;

    void layoutRows();
    void limitOffset();
    void recycleCell(const Cell& cell);
    void recycleCellsOutside(const RowRange& range);
    bool makeMissingCells(const RowRange& range);
    void detachFromRows(const Cell& cell);
    void placeCells();
    void removeUnusedCells();
    std::optional<UITableViewCellSeparator> separator();
    std::optional<UITableViewCellSeparator> separatorOfRow(std::size_t row);

    UITableViewStyle m_style;
    std::weak_ptr<UITableViewDataSource> m_dataSource;
    std::weak_ptr<UITableViewDelegate> m_tableDelegate;
    UITableViewCellSeparatorStyle m_separatorStyle = UITableViewCellSeparatorStyle::singleLine;
    UIColor m_separatorColor;
    UIEdgeInsets m_separatorInset;
    bool m_paintsTrailingSeparators = true;
    CGFloat m_rowHeight = 44;

    Rows m_rows;
    std::map<std::size_t, Cell> m_cells;                             // in use, by row
    std::map<std::string, std::deque<Cell>, std::less<>> m_reusable; // by identifier
    std::vector<Cell> m_recycled; // since the last layout; may still be subviews
    CGFloat m_laidOutHeight = 0;
    bool m_needsReload = true;
    bool m_isQuerying = false; // a call of the data source or the delegate is running
};

} // namespace quorvel::platform
