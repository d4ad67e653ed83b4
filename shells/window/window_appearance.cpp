#include "shells/window/window_appearance.h"

#include <gtk/gtk.h>

namespace quorvel::window {

namespace {

constexpr const char* darkThemeSetting = "gtk-application-prefer-dark-theme";

shells::Appearance colorsOf(const freedesktop::DesktopAppearance& desktop) {
    return shells::standardAppearance(
        shells::appearanceKind(desktop.colorScheme(), desktop.hasHighContrast()));
}

// The header and the menus belong to the agenda.
gboolean wantsDarkTheme(const shells::Appearance& colors) {
    return colors.backdrop.green < colors.title.green ? TRUE : FALSE;
}

// The toolkit reads its theme when it makes its settings, and again whenever this setting is set.
// Each takes a third of the time of an empty window's start, so its settings begin with the theme
// that is wanted.
void beginWithTheme(gboolean isDark) {
    auto* const settings = static_cast<GObjectClass*>(g_type_class_ref(GTK_TYPE_SETTINGS));
    GParamSpec* const setting = g_object_class_find_property(settings, darkThemeSetting);
    if (setting != nullptr && G_IS_PARAM_SPEC_BOOLEAN(setting)) {
        G_PARAM_SPEC_BOOLEAN(setting)->default_value = isDark;
    }
    g_type_class_unref(settings);
}

void preferTheme(gboolean isDark) {
    GtkSettings* const settings = gtk_settings_get_default();
    gboolean wasDark = FALSE;
    g_object_get(settings, darkThemeSetting, &wasDark, nullptr);
    if (wasDark != isDark) {
        g_object_set(settings, darkThemeSetting, isDark, nullptr);
    }
}

} // namespace

WindowAppearance::WindowAppearance()
    : m_desktop([this] { follow(); })
    , m_colors(colorsOf(m_desktop)) {
    beginWithTheme(wantsDarkTheme(m_colors));
    preferTheme(wantsDarkTheme(m_colors)); // if the user's settings of the toolkit say otherwise
}

void WindowAppearance::follow() {
    m_colors = colorsOf(m_desktop);
    preferTheme(wantsDarkTheme(m_colors));
    if (m_onChange) {
        m_onChange();
    }
}

} // namespace quorvel::window
