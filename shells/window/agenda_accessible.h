// What a screen reader sees of the agenda: a list whose items are the rows, each with a name and,
// where a pull would do something, one action.
#pragma once

#include <exception>
#include <functional>

#include <gtk/gtk.h>

namespace quorvel::window {

class RowList;

// For gtk_widget_class_set_accessible_type() of the widget that shows the rows.
GType agendaAccessibleType();

// From here on the widget's accessible object speaks of these rows; null: of none, which is to be
// said before the rows go. The widget is of a class with the type above. `failed` is given what the
// rows throw while a reader asks them, and is called no more once other rows are set; the reader
// gets an empty answer.
void setAccessibleRows(GtkWidget* widget, RowList* rows,
                       std::function<void(std::exception_ptr)> failed);
// The rows are others now: their number or their names.
void accessibleRowsChanged(GtkWidget* widget);
void accessibleFocusMoved(GtkWidget* widget);

} // namespace quorvel::window
