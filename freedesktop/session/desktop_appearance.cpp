#include "freedesktop/session/desktop_appearance.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace quorvel::freedesktop {

namespace {

constexpr const char* interfaceSchema = "org.gnome.desktop.interface";

ColorScheme colorSchemeOf(const std::optional<std::string>& setting) {
    if (setting == "prefer-dark") {
        return ColorScheme::dark;
    }
    return setting == "prefer-light" ? ColorScheme::light : ColorScheme::noPreference;
}

// Older desktops have a theme instead of the setting.
bool isHighContrastTheme(const std::optional<std::string>& theme) {
    return theme && std::string_view(*theme).starts_with("HighContrast");
}

} // namespace

DesktopAppearance::DesktopAppearance(std::function<void()> onChange)
    : m_onChange(std::move(onChange))
    , m_colorScheme(interfaceSchema, "color-scheme")
    , m_theme(interfaceSchema, "gtk-theme")
    , m_highContrast("org.gnome.desktop.a11y.interface", "high-contrast")
    , m_fontName(interfaceSchema, "font-name")
    , m_portal([this] { update(); }) {
    for (DesktopSetting* setting : std::initializer_list<DesktopSetting*>{
             &m_colorScheme, &m_theme, &m_highContrast, &m_textScale, &m_fontName}) {
        setting->setOnChange([this] { update(); });
    }
    m_values = currentValues();
}

DesktopAppearance::Values DesktopAppearance::currentValues() const {
    const PortalPreferences& portal = m_portal.preferences();
    Values values;
    values.colorScheme = portal.colorScheme.value_or(colorSchemeOf(m_colorScheme.value()));
    values.highContrast = portal.highContrast.value_or(m_highContrast.flagValue().value_or(false) ||
                                                       isHighContrastTheme(m_theme.value()));
    values.textScale = m_textScale.textScale();
    values.fontName = m_fontName.value();
    return values;
}

void DesktopAppearance::update() {
    Values values = currentValues();
    if (std::exchange(m_values, std::move(values)) != m_values) {
        m_onChange();
    }
}

} // namespace quorvel::freedesktop
