#include "shells/settings/choice_list.h"

namespace quorvel::settings_pages {

using freedesktop::ObjectHandle;

namespace {

constexpr int spacing = 6;
constexpr int leastText = 14; // characters
constexpr int widestText = 40;

void showMark(GtkListItem* item) {
    GtkWidget* const mark = gtk_widget_get_last_child(gtk_list_item_get_child(item));
    gtk_widget_set_visible(mark, gtk_list_item_get_selected(item));
}

void setUpItem(GtkSignalListItemFactory*, GtkListItem* item, gpointer) {
    GtkWidget* const label = gtk_label_new(nullptr);
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
    gtk_label_set_width_chars(GTK_LABEL(label), leastText);
    gtk_label_set_max_width_chars(GTK_LABEL(label), widestText);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_widget_set_hexpand(label, TRUE);
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing);
    gtk_box_append(GTK_BOX(box), label);
    gtk_box_append(GTK_BOX(box), gtk_image_new_from_icon_name("object-select-symbolic"));
    gtk_list_item_set_child(item, box);
    g_signal_connect(item, "notify::selected",
                     G_CALLBACK(+[](GtkListItem* changed, GParamSpec*) { showMark(changed); }),
                     nullptr);
}

void bindItem(GtkSignalListItemFactory*, GtkListItem* item, gpointer) {
    auto* const string = static_cast<GtkStringObject*>(gtk_list_item_get_item(item));
    GtkWidget* const label = gtk_widget_get_first_child(gtk_list_item_get_child(item));
    gtk_label_set_text(GTK_LABEL(label), gtk_string_object_get_string(string));
    showMark(item);
}

} // namespace

ObjectHandle<GtkListItemFactory> textFactory() {
    ObjectHandle<GtkListItemFactory> factory(gtk_signal_list_item_factory_new());
    g_signal_connect(factory.get(), "setup", G_CALLBACK(setUpItem), nullptr);
    g_signal_connect(factory.get(), "bind", G_CALLBACK(bindItem), nullptr);
    return factory;
}

} // namespace quorvel::settings_pages
