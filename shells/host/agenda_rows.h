// The rows of a hosted widget for the keyboard and for screen readers, and which of them has the
// focus.
#pragma once

#include <functional>
#include <vector>

#include "shells/host/row_list.h"
#include "shells/host/row_pull.h"
#include "shells/host/scroll_indicator.h"
#include "shells/widget/row_descriptions.h"

namespace quorvel::platform {
class TextMeasurer;
class UIScrollView;
} // namespace quorvel::platform

namespace quorvel::shells {
class HostedWidget;
} // namespace quorvel::shells

namespace quorvel::shells {

class AgendaRows final : public RowList {
public:
    struct Handlers {
        std::function<void()> onAppearanceChanged; // after a scroll or a pull
        std::function<void()> onFocusMoved;
    };

    // The widget is inside `scroller`; both outlive the rows. `frameTime` returns the current time
    // of the frame clock, in seconds.
    AgendaRows(HostedWidget& widget, platform::UIScrollView& scroller,
               std::function<double()> frameTime, Handlers handlers);

    // Call this after each presentation of the widget.
    void reload();
    // Created at the first use after a presentation, as are the names.
    const std::vector<RowDescription>& descriptions() const;
    // Absent where there is no such row.
    std::optional<RowContent> content(std::size_t row) const { return rowContent(m_widget, row); }
    void dropFocus();
    // The rows with an action whose content is to the right of its place, from top to bottom. Those
    // outside the area have none.
    std::vector<RowPull> pulls() const;
    // The texts of a visible row of which it shows only the beginnings, one a line.
    std::string cutTexts(std::size_t row, platform::TextMeasurer& textMeasurer) const;
    // Of the list, or of what contains it where the list itself does not scroll.
    ScrollPosition scrollPosition() const;
    // The row at that point of the area.
    std::optional<std::size_t> rowAt(const platform::CGPoint& location) const;
    // The number of rows that are completely visible, at least 1.
    std::size_t pageLength() const;

    std::size_t rowCount() const override;
    std::string rowName(std::size_t row) const override;
    bool rowHasAction(std::size_t row) const override;
    bool runRowAction(std::size_t row) override;
    platform::CGRect rowFrame(std::size_t row) const override;
    std::optional<std::size_t> focusedRow() const override { return m_focusedRow; }
    bool focusRow(std::size_t row) override;

private:
    void setFocus(std::optional<std::size_t> row);

    HostedWidget& m_widget;
    platform::UIScrollView& m_scroller;
    std::function<double()> m_frameTime;
    Handlers m_handlers;
    mutable std::optional<std::vector<RowDescription>> m_descriptions;
    mutable std::optional<std::vector<std::string>> m_names;
    std::optional<std::size_t> m_focusedRow;
};

} // namespace quorvel::shells
