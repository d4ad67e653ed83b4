// The menu of a row: opens its event or its day, and copies its texts.
#pragma once

#include <exception>
#include <functional>

#include <gtk/gtk.h>

#include "platform/geometry.h"
#include "shells/widget/row_descriptions.h"
#include "shells/window/window_actions.h"

namespace quorvel::platform {
struct Platform;
} // namespace quorvel::platform

namespace quorvel::window {

class RowActions {
public:
    // The menu belongs to the widget that shows the rows. The platform outlives the actions.
    RowActions(GtkWidget* rows, const platform::Platform& platform,
               std::function<void(std::exception_ptr)> onFailure);
    RowActions(const RowActions&) = delete;
    RowActions& operator=(const RowActions&) = delete;

    // Opens the menu at the pointer of the event, or, without an event, below the frame, in points
    // of the widget. The menu remains that of this row, whatever is presented meanwhile.
    void openMenu(const shells::RowContent& row, const platform::CGRect& frame,
                  const GdkEvent* event);

private:
    void openDay() const;
    void copy(const std::string& text) const;

    GtkWidget* m_rows;
    const platform::Platform& m_platform;
    shells::RowContent m_row; // of the menu
    WindowActions m_actions;
    GtkWidget* m_menu; // owned by GTK, together with the widget
};

} // namespace quorvel::window
