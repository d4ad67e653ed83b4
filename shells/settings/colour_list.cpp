#include "shells/settings/colour_list.h"

#include <charconv>
#include <memory>
#include <string>

#include "freedesktop/preferences/setting_descriptions.h"

namespace quorvel::settings_pages {

using freedesktop::ColourCode;
using freedesktop::ObjectHandle;

namespace {

constexpr const char* valueData = "quorvel-colour";
constexpr int swatchSize = 24;
constexpr int spacing = 8;

constexpr Rgba white{0xFF, 0xFF, 0xFF, 0xFF};
constexpr Rgba black{0, 0, 0, 0xFF};
// Of calendars, which differ.
constexpr Rgba red{0xE0, 0x1B, 0x24, 0xFF};
constexpr Rgba green{0x2E, 0xC2, 0x7E, 0xFF};
constexpr Rgba blue{0x35, 0x84, 0xE4, 0xFF};

void setUpItem(GtkSignalListItemFactory*, GtkListItem* item, gpointer) {
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing);
    gtk_box_append(GTK_BOX(box), makeSwatch(swatchSize));
    gtk_box_append(GTK_BOX(box), gtk_label_new(nullptr));
    gtk_list_item_set_child(item, box);
}

void bindItem(GtkSignalListItemFactory*, GtkListItem* item, gpointer) {
    auto* const string = static_cast<GtkStringObject*>(gtk_list_item_get_item(item));
    GtkWidget* const box = gtk_list_item_get_child(item);
    const auto* const value =
        static_cast<const char*>(g_object_get_data(G_OBJECT(string), valueData));
    setSwatch(gtk_widget_get_first_child(box), swatchOfColour(value));
    gtk_label_set_text(GTK_LABEL(gtk_widget_get_last_child(box)),
                       gtk_string_object_get_string(string));
}

} // namespace

Swatch swatchOfColour(std::string_view value) {
    if (value.empty()) {
        return {{white, black}};
    }
    std::int64_t code = -1;
    std::from_chars(value.data(), value.data() + value.size(), code);
    for (const ColourCode& colour : freedesktop::colourCodes()) {
        if (colour.code == code) {
            return colour.rgba ? Swatch{{*colour.rgba}} : Swatch{{red, green, blue}};
        }
    }
    return {{white}}; // what the widget makes of every other code
}

ObjectHandle<GtkListItemFactory> colourFactory() {
    ObjectHandle<GtkListItemFactory> factory(gtk_signal_list_item_factory_new());
    g_signal_connect(factory.get(), "setup", G_CALLBACK(setUpItem), nullptr);
    g_signal_connect(factory.get(), "bind", G_CALLBACK(bindItem), nullptr);
    return factory;
}

ObjectHandle<GtkStringObject> newColourItem(std::string_view value, const char* label) {
    ObjectHandle<GtkStringObject> item(gtk_string_object_new(label));
    g_object_set_data_full(G_OBJECT(item.get()), valueData, g_strdup(std::string(value).c_str()),
                           g_free);
    return item;
}

} // namespace quorvel::settings_pages
