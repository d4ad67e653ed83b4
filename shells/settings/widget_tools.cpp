#include "shells/settings/widget_tools.h"

#include <algorithm>
#include <memory>

namespace quorvel::settings_pages {

namespace {

void scrollToPlaceOf(GtkWidget* widget) {
    GtkWidget* const viewport = gtk_widget_get_ancestor(widget, GTK_TYPE_VIEWPORT);
    graphene_rect_t frame; // within all that can be scrolled to
    if (viewport == nullptr ||
        gtk_widget_compute_bounds(widget, gtk_viewport_get_child(GTK_VIEWPORT(viewport)), &frame) ==
            FALSE) {
        return;
    }
    GtkAdjustment* const position = gtk_scrollable_get_vadjustment(GTK_SCROLLABLE(viewport));
    const double top = frame.origin.y;
    const double bottom = top + frame.size.height;
    const double shownAbove = bottom - gtk_adjustment_get_page_size(position);
    // Setting the value also ends a motion that began before the widgets had their places.
    gtk_adjustment_set_value(
        position, std::min(std::max(gtk_adjustment_get_value(position), shownAbove), top));
}

} // namespace

void setAccessibleName(GtkWidget* widget, const std::string& name) {
    // Some versions of the toolkit read both the name and what labels the widget.
    gtk_accessible_reset_relation(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_RELATION_LABELLED_BY);
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   name.c_str(), -1);
}

void addControl(AdwActionRow* row, GtkWidget* control, const std::string& name) {
    gtk_widget_set_valign(control, GTK_ALIGN_CENTER);
    adw_action_row_add_suffix(row, control);
    adw_action_row_set_activatable_widget(row, control);
    setAccessibleName(control, name);
}

void nameByMnemonic(GtkWidget* button, const std::string& text) {
    std::string name = text;
    if (const std::size_t mark = name.find('_'); mark != std::string::npos) {
        name.erase(mark, 1);
    }
    setAccessibleName(button, name);
}

void setRowTexts(AdwActionRow* row, const std::string& title, const std::string& subtitle) {
    adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(row), FALSE);
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title.c_str());
    adw_action_row_set_subtitle(row, subtitle.c_str());
    adw_action_row_set_subtitle_lines(row, 0); // all of them
    adw_action_row_set_title_lines(row, 0);
    setAccessibleName(GTK_WIDGET(row), title);
}

GtkWidget* makeIconButton(const char* icon, const std::string& name) {
    GtkWidget* const button = gtk_button_new_from_icon_name(icon);
    gtk_widget_add_css_class(button, "flat");
    gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
    gtk_widget_set_tooltip_text(button, name.c_str());
    setAccessibleName(button, name);
    return button;
}

void scrollIntoView(GtkWidget* widget) {
    constexpr int framesUntilPlaced = 3;
    const GtkTickCallback passed = [](GtkWidget* passing, GdkFrameClock*,
                                      gpointer frames) -> gboolean {
        if (--*static_cast<int*>(frames) > 0) {
            return G_SOURCE_CONTINUE;
        }
        scrollToPlaceOf(passing);
        return G_SOURCE_REMOVE;
    };
    const GDestroyNotify destroy = [](gpointer frames) { delete static_cast<int*>(frames); };
    gtk_widget_add_tick_callback(widget, passed, std::make_unique<int>(framesUntilPlaced).release(),
                                 destroy);
}

void setSwitch(GtkWidget* control, bool isOn) {
    if ((gtk_switch_get_active(GTK_SWITCH(control)) != FALSE) != isOn) {
        gtk_switch_set_active(GTK_SWITCH(control), isOn ? TRUE : FALSE);
    }
}

GtkWidget* makeParagraph(const std::string& text) {
    GtkWidget* const label = gtk_label_new(text.c_str());
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_label_set_selectable(GTK_LABEL(label), TRUE);
    return label;
}

} // namespace quorvel::settings_pages
