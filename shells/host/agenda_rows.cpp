#include "shells/host/agenda_rows.h"

#include <utility>

#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_window.h"
#include "shells/widget/cut_texts.h"
#include "shells/widget/hosted_widget.h"

namespace quorvel::shells {

using platform::CGFloat;
using platform::CGPoint;
using platform::CGRect;
using platform::NSIndexPath;
using platform::NSInteger;
using platform::UITableView;

namespace {

// A little more than a pull needs to run the action, so that the user sees the row move.
constexpr CGFloat pullDistance = 84; // points

NSIndexPath pathOf(std::size_t row) {
    return {0, static_cast<NSInteger>(row)};
}

bool hasRow(const UITableView* table, std::size_t row) {
    return table != nullptr && row < static_cast<std::size_t>(table->numberOfRowsInSection(0));
}

} // namespace

AgendaRows::AgendaRows(HostedWidget& widget, platform::UIScrollView& scroller,
                       std::function<double()> frameTime, Handlers handlers)
    : m_widget(widget)
    , m_scroller(scroller)
    , m_frameTime(std::move(frameTime))
    , m_handlers(std::move(handlers)) {}

void AgendaRows::reload() {
    m_descriptions.reset();
    m_names.reset();
    if (m_focusedRow && *m_focusedRow >= rowCount()) {
        setFocus(std::nullopt);
    }
}

const std::vector<RowDescription>& AgendaRows::descriptions() const {
    if (!m_descriptions) {
        m_descriptions = describeRows(m_widget);
    }
    return *m_descriptions;
}

void AgendaRows::dropFocus() {
    setFocus(std::nullopt);
}

void AgendaRows::setFocus(std::optional<std::size_t> row) {
    if (std::exchange(m_focusedRow, row) != row) {
        m_handlers.onFocusMoved();
    }
}

std::string AgendaRows::cutTexts(std::size_t row, platform::TextMeasurer& textMeasurer) const {
    std::string lines;
    for (const std::string& text : shells::cutTexts(m_widget, row, textMeasurer)) {
        lines += (lines.empty() ? "" : "\n") + text;
    }
    return lines;
}

ScrollPosition AgendaRows::scrollPosition() const {
    const platform::UIScrollView* scroller = m_widget.table();
    if (scroller == nullptr || scroller->contentSize().height <= scroller->bounds().size.height) {
        scroller = &m_scroller;
    }
    const platform::UIView* const container = scroller->superview();
    return {{container != nullptr ? container->convertPointToView(scroller->frame().origin, nullptr)
                                  : CGPoint{},
             scroller->bounds().size},
            scroller->contentSize().height,
            scroller->contentOffset().y};
}

std::optional<std::size_t> AgendaRows::rowAt(const CGPoint& location) const {
    std::size_t first = 0;
    std::size_t end = m_scroller.isHidden() ? 0 : rowCount();
    while (first < end) {
        const std::size_t middle = first + (end - first) / 2;
        const CGRect frame = rowFrame(middle);
        if (CGRectContainsPoint(frame, location)) {
            return middle;
        }
        if (location.y < CGRectGetMinY(frame)) {
            end = middle;
        } else {
            first = middle + 1;
        }
    }
    return std::nullopt;
}

std::size_t AgendaRows::pageLength() const {
    std::size_t rows = 0;
    for (std::size_t row = 0; row < rowCount(); ++row) {
        const CGRect frame = rowFrame(row);
        if (CGRectGetMaxY(frame) > m_scroller.bounds().size.height) {
            break;
        }
        rows += CGRectGetMinY(frame) >= 0 ? 1U : 0U;
    }
    return std::max<std::size_t>(rows, 1);
}

std::vector<RowPull> AgendaRows::pulls() const {
    std::vector<RowPull> pulls;
    for (std::size_t row = 0; row < rowCount(); ++row) {
        const auto content = rowHasAction(row) ? m_widget.rowScrollView(row) : nullptr;
        if (content && content->contentOffset().x < 0) {
            pulls.push_back(
                {rowFrame(row), -content->contentOffset().x, descriptions()[row].color});
        }
    }
    return pulls;
}

std::size_t AgendaRows::rowCount() const {
    return descriptions().size();
}

std::string AgendaRows::rowName(std::size_t row) const {
    if (!m_names) {
        m_names = nameRows(m_widget);
    }
    return row < m_names->size() ? (*m_names)[row] : "";
}

bool AgendaRows::rowHasAction(std::size_t row) const {
    return row < rowCount() && descriptions()[row].hasAction;
}

bool AgendaRows::runRowAction(std::size_t row) {
    if (!rowHasAction(row)) {
        return false;
    }
    const bool isPulled = m_widget.pullRow(row, pullDistance, m_frameTime());
    m_handlers.onAppearanceChanged();
    return isPulled;
}

CGRect AgendaRows::rowFrame(std::size_t row) const {
    const UITableView* table = m_widget.table();
    if (!hasRow(table, row)) {
        return {};
    }
    const CGRect rect = table->rectForRowAtIndexPath(pathOf(row));
    return {table->convertPointToView(rect.origin, nullptr), rect.size};
}

bool AgendaRows::focusRow(std::size_t row) {
    if (!m_widget.scrollToRow(row)) {
        return false;
    }
    m_handlers.onAppearanceChanged();
    setFocus(row);
    return true;
}

} // namespace quorvel::shells
