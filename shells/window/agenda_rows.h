// The rows of a hosted widget for those who do not use a pointer, and which of them has the focus.
#pragma once

#include <functional>
#include <vector>

#include "shells/widget/row_descriptions.h"
#include "shells/window/row_list.h"

namespace quorvel::platform {
class UIScrollView;
} // namespace quorvel::platform

namespace quorvel::shells {
class HostedWidget;
} // namespace quorvel::shells

namespace quorvel::window {

class AgendaRows final : public RowList {
public:
    struct Events {
        std::function<void()> looksDifferent; // something has been scrolled or pulled
        std::function<void()> focusMoved;
    };

    // The widget stands in `scroller`; both outlive the rows. `frameTime`: now, in seconds of the
    // frame clock.
    AgendaRows(shells::HostedWidget& widget, platform::UIScrollView& scroller,
               std::function<double()> frameTime, Events events);

    // The widget has been presented: its rows are others.
    void reload();
    // As the last presentation left them; made at first use.
    const std::vector<shells::RowDescription>& descriptions() const;
    void dropFocus();
    // How many rows are in sight as a whole, at least 1.
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

    shells::HostedWidget& m_widget;
    platform::UIScrollView& m_scroller;
    std::function<double()> m_frameTime;
    Events m_events;
    mutable std::optional<std::vector<shells::RowDescription>> m_descriptions;
    std::optional<std::size_t> m_focusedRow;
};

} // namespace quorvel::window
