// Presents the agenda to screen readers: a list whose items are the rows, each with a name and,
// where a pull has an effect, one action.
#pragma once

#include <exception>
#include <functional>

#include <gtk/gtk.h>

namespace quorvel::shells {
class RowList;
} // namespace quorvel::shells

namespace quorvel::gtk {

// The type for gtk_widget_class_set_accessible_type() of the widget that shows the rows.
GType agendaAccessibleType();

// Sets the rows of the widget's accessible object; null: none. Set null before the rows are
// destroyed. The widget's class has the type above. `onFailure` receives what the rows throw while
// a screen reader uses them, until other rows are set; the reader receives an empty answer.
void setAccessibleRows(GtkWidget* widget, shells::RowList* rows,
                       std::function<void(std::exception_ptr)> onFailure);
// Call these when the number or the names of the rows have changed, and when the focus has moved.
void updateAccessibleRows(GtkWidget* widget);
void updateAccessibleFocus(GtkWidget* widget);

} // namespace quorvel::gtk
