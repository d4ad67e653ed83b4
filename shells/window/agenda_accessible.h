// What a screen reader sees of the agenda: a list whose items are the rows, each with a name and,
// where a pull would do something, one action.
#pragma once

#include <gtk/gtk.h>

namespace quorvel::window {

class RowList;

// For gtk_widget_class_set_accessible_type() of the widget that shows the rows.
GType agendaAccessibleType();

// From here on the widget's accessible object speaks of these rows; null: of none, which is to be
// said before the rows go. The widget is of a class with the type above.
void setAccessibleRows(GtkWidget* widget, RowList* rows);
// The rows are others now: their number or their names. Nothing happens while nobody listens.
void accessibleRowsChanged(GtkWidget* widget);
void accessibleFocusMoved(GtkWidget* widget);

} // namespace quorvel::window
