// Rows are stored as running sums of their heights, so that a bisection finds the visible rows.
#include "platform/ui/ui_table_view.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/screen.h"
#include "platform/ui/ui_window.h"

namespace quorvel::platform {

namespace {

constexpr UIColor defaultSeparatorColor = {200.0 / 255, 199.0 / 255, 204.0 / 255, 1}; // #C8C7CC
constexpr CGFloat defaultSeparatorLeftInset = 15;
// More separators than any screen has pixels.
constexpr int mostEmptyRows = 100000;

CGFloat usableHeight(CGFloat height) {
    return std::isfinite(height) && height > 0 ? height : 0;
}

void settleScrollViewsBelow(const UIView& view) {
    std::vector<std::shared_ptr<UIView>> views(view.subviews());
    while (!views.empty()) {
        const std::shared_ptr<UIView> next = std::move(views.back());
        views.pop_back();
        if (auto* scrollView = dynamic_cast<UIScrollView*>(next.get())) {
            scrollView->settle();
        }
        views.insert(views.end(), next->subviews().begin(), next->subviews().end());
    }
}

// Sets a flag for as long as it lives.
class Raised {
public:
    explicit Raised(bool& flag)
        : m_flag(flag) {
        m_flag = true;
    }
    ~Raised() { m_flag = false; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& m_flag;
};

} // namespace

UITableView::UITableView(const CGRect& frame, UITableViewStyle style)
    : UIScrollView(frame)
    , m_style(style)
    , m_separatorColor(defaultSeparatorColor)
    , m_separatorInset{0, defaultSeparatorLeftInset, 0, 0}
    , m_rows{{0}, {}, {0}} {}

void UITableView::setDataSource(std::weak_ptr<UITableViewDataSource> dataSource) {
    m_dataSource = std::move(dataSource);
    m_needsReload = true;
    setNeedsLayout();
}

void UITableView::setDelegate(std::weak_ptr<UITableViewDelegate> delegate) {
    UIScrollView::setDelegate(delegate);
    m_tableDelegate = std::move(delegate);
    m_needsReload = true;
    setNeedsLayout();
}

void UITableView::setSeparatorStyle(UITableViewCellSeparatorStyle style) {
    m_separatorStyle = style;
    setNeedsLayout();
}

void UITableView::setSeparatorColor(const UIColor& color) {
    m_separatorColor = color;
    setNeedsLayout();
}

void UITableView::setSeparatorInset(const UIEdgeInsets& inset) {
    m_separatorInset = inset;
    setNeedsLayout();
}

void UITableView::setPaintsTrailingSeparators(bool paints) {
    m_paintsTrailingSeparators = paints;
    setNeedsLayout();
}

void UITableView::reloadData() {
    const auto source = dataSource();
    if (!source) {
        return;
    }
    setNeedsLayout();
    if (m_isQuerying) { // called by the data source or the delegate: the running call ends first
        m_needsReload = true;
        return;
    }
    m_needsReload = false;
    m_rows = queryRows(*source);
    for (const auto& [row, cell] : std::exchange(m_cells, {})) {
        recycleCell(cell);
    }
    setContentSize({bounds().size.width, m_rows.totalHeight()});
    limitOffset();
}

UITableView::Rows UITableView::queryRows(UITableViewDataSource& source) {
    const Raised asking(m_isQuerying);
    const NSInteger sections = std::max<NSInteger>(source.numberOfSectionsInTableView(this), 0);
    Rows rows{{0}, {}, {0}};
    for (NSInteger section = 0; section < sections; ++section) {
        const NSInteger count = std::max<NSInteger>(source.numberOfRowsInSection(this, section), 0);
        rows.sectionStarts.push_back(rows.sectionStarts.back() + static_cast<std::size_t>(count));
    }
    rows.heights.reserve(rows.sectionStarts.back());
    rows.tops.reserve(rows.sectionStarts.back() + 1);
    for (std::size_t section = 0; section + 1 < rows.sectionStarts.size(); ++section) {
        const std::size_t count = rows.sectionStarts[section + 1] - rows.sectionStarts[section];
        for (std::size_t row = 0; row < count; ++row) {
            rows.heights.push_back(
                queryHeight({static_cast<NSInteger>(section), static_cast<NSInteger>(row)}));
            rows.tops.push_back(rows.tops.back() + rows.heights.back());
        }
    }
    return rows;
}

CGFloat UITableView::queryHeight(const NSIndexPath& indexPath) {
    const auto delegate = m_tableDelegate.lock();
    return usableHeight(delegate ? delegate->heightForRowAtIndexPath(this, indexPath)
                                 : m_rowHeight);
}

void UITableView::limitOffset() {
    const CGFloat lowest = std::max(contentSize().height - bounds().size.height, 0.0);
    if (contentOffset().y > lowest) {
        setContentOffset({contentOffset().x, lowest});
    }
}

std::shared_ptr<UITableViewCell>
UITableView::dequeueReusableCellWithIdentifier(std::string_view identifier) {
    const auto queue = m_reusable.find(identifier);
    if (queue == m_reusable.end() || queue->second.empty()) {
        return nullptr;
    }
    Cell cell = std::move(queue->second.front());
    queue->second.pop_front();
    return cell;
}

NSInteger UITableView::numberOfSections() const {
    return static_cast<NSInteger>(m_rows.sectionStarts.size()) - 1;
}

NSInteger UITableView::numberOfRowsInSection(NSInteger section) const {
    if (section < 0 || section >= numberOfSections()) {
        return 0;
    }
    const auto index = static_cast<std::size_t>(section);
    return static_cast<NSInteger>(m_rows.sectionStarts[index + 1] - m_rows.sectionStarts[index]);
}

std::vector<CGFloat> UITableView::rowHeights() const {
    return m_rows.heights;
}

std::optional<std::size_t> UITableView::rowNumber(const NSIndexPath& indexPath) const {
    if (indexPath.row < 0 || indexPath.row >= numberOfRowsInSection(indexPath.section)) {
        return std::nullopt;
    }
    return m_rows.sectionStarts[static_cast<std::size_t>(indexPath.section)] +
           static_cast<std::size_t>(indexPath.row);
}

NSIndexPath UITableView::indexPathOfRow(std::size_t row) const {
    const auto& starts = m_rows.sectionStarts;
    const auto next = std::upper_bound(starts.begin(), starts.end(), row); // skips empty sections
    return {static_cast<NSInteger>(next - starts.begin()) - 1,
            static_cast<NSInteger>(row - *(next - 1))};
}

CGRect UITableView::rowRect(std::size_t row) const {
    return CGRectMake(0, m_rows.tops[row], bounds().size.width, m_rows.heights[row]);
}

CGRect UITableView::rectForRowAtIndexPath(const NSIndexPath& indexPath) const {
    const auto row = rowNumber(indexPath);
    return row ? rowRect(*row) : CGRect{};
}

std::shared_ptr<UITableViewCell>
UITableView::cellForRowAtIndexPath(const NSIndexPath& indexPath) const {
    const auto row = rowNumber(indexPath);
    const auto found = row ? m_cells.find(*row) : m_cells.end();
    return found == m_cells.end() ? nullptr : found->second;
}

std::vector<std::shared_ptr<UITableViewCell>> UITableView::visibleCells() const {
    std::vector<Cell> cells;
    for (const auto& [row, cell] : m_cells) {
        cells.push_back(cell);
    }
    return cells;
}

std::optional<NSIndexPath> UITableView::indexPathForCell(const UITableViewCell& cell) const {
    const auto found = std::find_if(m_cells.begin(), m_cells.end(), [&cell](const auto& entry) {
        return entry.second.get() == &cell;
    });
    return found == m_cells.end() ? std::nullopt
                                  : std::optional<NSIndexPath>(indexPathOfRow(found->first));
}

// The rows from the first to the last visible one, including rows without height between them. A
// table that is as high as its rows has cells for those alone that the scroll view around it shows.
UITableView::RowRange UITableView::visibleRows() const {
    const CGRect area = visibleArea();
    const CGFloat top = CGRectGetMinY(area);
    const CGFloat bottom = CGRectGetMaxY(area);
    if (!(bottom > top)) {
        return {0, 0};
    }
    const auto& tops = m_rows.tops;
    const auto firstBottom = std::upper_bound(tops.begin() + 1, tops.end(), top);
    const auto firstBelow = std::lower_bound(tops.begin(), tops.end() - 1, bottom);
    const auto first = static_cast<std::size_t>(firstBottom - (tops.begin() + 1));
    const auto end = static_cast<std::size_t>(firstBelow - tops.begin());
    return {first, std::max(first, end)};
}

void UITableView::layoutSubviews() {
    if (m_isQuerying) {
        setNeedsLayout();
        return;
    }
    if (m_needsReload) {
        reloadData();
    }
    setContentSize({bounds().size.width, m_rows.totalHeight()});
    if (std::exchange(m_laidOutHeight, bounds().size.height) != bounds().size.height) {
        limitOffset();
    }
    layoutRows();
}

void UITableView::layoutRows() {
    const RowRange range = visibleRows();
    recycleCellsOutside(range);
    if (makeMissingCells(range)) {
        removeUnusedCells();
        placeCells();
    } else {
        setNeedsLayout(); // the rows have changed
    }
}

// A pulled row must not run the action of the event that the cell shows next, nor start with its
// offset.
void UITableView::recycleCell(const Cell& cell) {
    if (UIWindow* top = window()) {
        top->stopScrollingBelow(*cell);
    }
    settleScrollViewsBelow(*cell);
    m_recycled.push_back(cell);
    if (const auto& identifier = cell->reuseIdentifier()) {
        m_reusable[*identifier].push_back(cell);
    }
}

void UITableView::recycleCellsOutside(const RowRange& range) {
    for (auto entry = m_cells.begin(); entry != m_cells.end();) {
        if (entry->first >= range.first && entry->first < range.end) {
            ++entry;
            continue;
        }
        recycleCell(entry->second);
        entry = m_cells.erase(entry);
    }
}

// False where the data source changed the rows, so that the range is invalid.
bool UITableView::makeMissingCells(const RowRange& range) {
    const auto source = dataSource();
    const Raised asking(m_isQuerying);
    for (std::size_t row = range.first; source && row < range.end; ++row) {
        if (m_rows.heights[row] == 0 || m_cells.count(row) != 0) {
            continue;
        }
        const Cell cell = source->cellForRowAtIndexPath(this, indexPathOfRow(row));
        if (!cell) {
            continue;
        }
        detachFromRows(cell);
        m_cells.emplace(row, cell);
        cell->setNeedsLayout();
        if (m_needsReload) {
            return false;
        }
    }
    return true;
}

// A data source may return the same cell for two rows, or one that it did not dequeue. A cell shows
// one row, and is not reusable at the same time.
void UITableView::detachFromRows(const Cell& cell) {
    const auto shown = std::find_if(m_cells.begin(), m_cells.end(),
                                    [&cell](const auto& entry) { return entry.second == cell; });
    if (shown != m_cells.end()) {
        m_cells.erase(shown);
    }
    if (const auto& identifier = cell->reuseIdentifier()) {
        auto& queue = m_reusable[*identifier];
        queue.erase(std::remove(queue.begin(), queue.end(), cell), queue.end());
    }
}

// Cells are subviews in the order of their rows, behind all others.
void UITableView::placeCells() {
    std::size_t index = 0;
    for (const auto& [row, cell] : m_cells) {
        if (index >= subviews().size() || subviews()[index] != cell) {
            insertSubview(cell, index);
        }
        ++index;
        cell->setFrame(rowRect(row));
        cell->setSeparator(separatorOfRow(row));
    }
}

void UITableView::removeUnusedCells() {
    for (const auto& cell : std::exchange(m_recycled, {})) {
        if (cell->superview() == this && !indexPathForCell(*cell)) {
            cell->removeFromSuperview();
        }
    }
}

std::optional<UITableViewCellSeparator> UITableView::separator() {
    if (m_separatorStyle == UITableViewCellSeparatorStyle::none) {
        return std::nullopt;
    }
    const UIWindow* top = window();
    const CGFloat scale = top != nullptr ? top->screen().scale() : 1;
    return UITableViewCellSeparator{m_separatorColor, m_separatorInset, scale > 0 ? 1 / scale : 1};
}

std::optional<UITableViewCellSeparator> UITableView::separatorOfRow(std::size_t row) {
    auto line = separator();
    if (line) {
        line->isPainted = m_paintsTrailingSeparators || row + 1 < m_rows.heights.size();
    }
    return line;
}

void UITableView::drawRect(GraphicsContext& context) {
    const auto line = separator();
    if (!line || !m_paintsTrailingSeparators || !(m_rowHeight >= line->thickness)) {
        return;
    }
    const CGRect visible = bounds();
    const CGFloat end = m_rows.totalHeight();
    const CGFloat above = std::max(std::floor((CGRectGetMinY(visible) - end) / m_rowHeight), 0.0);
    for (int i = 0; i < mostEmptyRows; ++i) {
        const CGRect row = CGRectMake(visible.origin.x, end + (above + i) * m_rowHeight,
                                      visible.size.width, m_rowHeight);
        if (!(CGRectGetMaxY(row) <= CGRectGetMaxY(visible))) {
            return;
        }
        drawSeparator(context, *line, row);
    }
}

} // namespace quorvel::platform
