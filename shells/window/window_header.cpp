#include "shells/window/window_header.h"

#include <cstddef>
#include <string_view>

#include "freedesktop/glib/handles.h"
#include "freedesktop/language/messages.h"
#include "shells/window/menus.h"
#include "shells/window/window_text.h"

namespace quorvel::window {

using freedesktop::ObjectHandle;

namespace {

constexpr int pictureSize = 20; // points

// The themes' title bars are made for windows of many controls. The empty bar is as high as its
// contents are in the toolkit's own theme.
constexpr const char* slimStyle = ".agenda-header { min-height: 36px; padding: 0 4px; }"
                                  ".agenda-header button { min-height: 24px; min-width: 24px;"
                                  " padding: 1px; margin: 4px 0; }"
                                  ".agenda-header image { padding: 0; }";

void addSlimStyle(GtkWidget* bar) {
    const ObjectHandle<GtkCssProvider> provider(gtk_css_provider_new());
    gtk_css_provider_load_from_data(provider.get(), slimStyle, -1, nullptr);
    gtk_style_context_add_provider_for_screen(gtk_widget_get_screen(bar),
                                              GTK_STYLE_PROVIDER(provider.get()),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    gtk_style_context_add_class(gtk_widget_get_style_context(bar), "agenda-header");
}

// It can be pressed before it has its menu.
GtkWidget* makeMenuButton() {
    GtkWidget* const button = gtk_menu_button_new();
    // A popover of X11 does not reach beyond its window, which may be a single row high.
    gtk_menu_button_set_use_popover(GTK_MENU_BUTTON(button), FALSE);
    gtk_widget_set_sensitive(button, TRUE);
    gtk_container_add(GTK_CONTAINER(button),
                      gtk_image_new_from_icon_name("open-menu-symbolic", GTK_ICON_SIZE_BUTTON));
    gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
    gtk_widget_set_tooltip_text(button, freedesktop::translated(text::menu));
    atk_object_set_name(gtk_widget_get_accessible(button), freedesktop::translated(text::menu));
    gtk_widget_set_focus_on_click(button, FALSE);
    return button;
}

GtkWidget* makeDateLabel() {
    GtkWidget* const label = gtk_label_new(nullptr);
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
    gtk_label_set_single_line_mode(GTK_LABEL(label), TRUE);
    gtk_style_context_add_class(gtk_widget_get_style_context(label), "title");
    return label;
}

// Only the button to close, on the side where the desktop has it.
std::string decorationLayout(GtkWidget* bar) {
    char* text = nullptr;
    g_object_get(gtk_widget_get_settings(bar), "gtk-decoration-layout", &text, nullptr);
    const freedesktop::TextHandle owned(text);
    const std::string_view layout = text != nullptr ? text : "";
    const std::size_t close = layout.find("close");
    return close < layout.find(':') ? "close:" : ":close";
}

} // namespace

WindowHeader::WindowHeader()
    : m_bar(gtk_header_bar_new())
    , m_picture(gtk_image_new())
    , m_date(makeDateLabel())
    , m_menuButton(makeMenuButton()) {
    GtkHeaderBar* const bar = GTK_HEADER_BAR(m_bar);
    gtk_header_bar_set_has_subtitle(bar, FALSE);
    gtk_header_bar_pack_start(bar, m_picture);
    // Beside the picture instead of in the middle, where the buttons would take room on both sides.
    gtk_header_bar_pack_start(bar, m_date);
    gtk_header_bar_set_custom_title(bar, gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0));
    gtk_header_bar_set_decoration_layout(bar, decorationLayout(m_bar).c_str());
    gtk_header_bar_pack_end(bar, m_menuButton);
    addSlimStyle(m_bar);
    for (GtkWidget* const widget : {m_picture, m_date, m_menuButton}) {
        gtk_widget_show_all(widget);
        gtk_widget_hide(widget);
        gtk_widget_set_no_show_all(widget, TRUE);
    }
    gtk_widget_show_all(m_bar);
}

void WindowHeader::showContents() {
    for (GtkWidget* const widget : {m_picture, m_date, m_menuButton}) {
        gtk_widget_show(widget);
    }
    gtk_header_bar_set_show_close_button(GTK_HEADER_BAR(m_bar), TRUE);
}

void WindowHeader::setPicture(const std::string& path, int scale) {
    const int pixels = pictureSize * scale;
    const ObjectHandle<GdkPixbuf> picture(
        gdk_pixbuf_new_from_file_at_size(path.c_str(), pixels, pixels, nullptr));
    cairo_surface_t* const surface =
        picture ? gdk_cairo_surface_create_from_pixbuf(picture.get(), scale, nullptr) : nullptr;
    gtk_image_set_from_surface(GTK_IMAGE(m_picture), surface);
    if (surface != nullptr) {
        cairo_surface_destroy(surface);
    }
}

void WindowHeader::setDate(const std::string& date) {
    gtk_label_set_text(GTK_LABEL(m_date), date.c_str());
    gtk_widget_set_tooltip_text(m_date, date.c_str()); // in a narrow window the end is cut off
}

void WindowHeader::makeMenu() {
    GtkMenuButton* const button = GTK_MENU_BUTTON(m_menuButton);
    if (gtk_menu_button_get_menu_model(button) == nullptr) {
        gtk_menu_button_set_menu_model(button, windowMenu().get());
    }
}

void WindowHeader::openMenu() {
    makeMenu();
    gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(m_menuButton), TRUE);
}

int WindowHeader::height() const {
    int natural = 0;
    gtk_widget_get_preferred_height(m_bar, nullptr, &natural);
    return natural;
}

} // namespace quorvel::window
