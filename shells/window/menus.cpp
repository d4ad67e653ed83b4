#include "shells/window/menus.h"

#include <initializer_list>

#include "freedesktop/language/messages.h"
#include "shells/window/window_text.h"

namespace quorvel::window {

using freedesktop::ObjectHandle;

namespace {

struct Item {
    const char* label;
    const char* action;
    const char* key; // as GTK writes it; null: none
};

void appendSection(GMenu* menu, std::initializer_list<Item> items) {
    const ObjectHandle<GMenu> section(g_menu_new());
    for (const Item& item : items) {
        const ObjectHandle<GMenuItem> entry(
            g_menu_item_new(freedesktop::translated(item.label), item.action));
        if (item.key != nullptr) {
            g_menu_item_set_attribute(entry.get(), "accel", "s", item.key);
        }
        g_menu_append_item(section.get(), entry.get());
    }
    g_menu_append_section(menu, nullptr, G_MENU_MODEL(section.get()));
}

} // namespace

ObjectHandle<GMenuModel> windowMenu() {
    GMenu* const menu = g_menu_new();
    appendSection(
        menu, {{text::settings, "win.settings", nullptr}, {text::refresh, "win.refresh", "F5"}});
    appendSection(menu, {{text::shortcuts, "win.shortcuts", "<Primary>question"},
                         {text::about, "win.about", nullptr},
                         {text::quit, "win.quit", "<Primary>q"}});
    return ObjectHandle<GMenuModel>(G_MENU_MODEL(menu));
}

ObjectHandle<GMenuModel> rowMenu() {
    GMenu* const menu = g_menu_new();
    appendSection(
        menu, {{text::openEvent, "row.open", nullptr}, {text::openDay, "row.open-day", nullptr}});
    appendSection(menu, {{text::copyTitle, "row.copy-title", nullptr},
                         {text::copyTime, "row.copy-time", nullptr},
                         {text::copyPlace, "row.copy-place", nullptr}});
    return ObjectHandle<GMenuModel>(G_MENU_MODEL(menu));
}

} // namespace quorvel::window
