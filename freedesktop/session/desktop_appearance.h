// How the user wants the desktop to look: colours, contrast, size of texts and font.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "freedesktop/session/color_scheme.h"
#include "freedesktop/session/desktop_settings.h"
#include "freedesktop/session/portal_appearance.h"

namespace quorvel::freedesktop {

// The colours and the contrast come from the desktop's portal, and until it has answered from the
// settings of the session; the other values come from these. Outside a desktop session everything
// has its default. Belongs to one thread and never blocks it.
class DesktopAppearance {
public:
    // Called on the default main context of the thread that constructs the object, whenever a value
    // has changed. The call must not destroy the object.
    explicit DesktopAppearance(std::function<void()> onChange);
    DesktopAppearance(const DesktopAppearance&) = delete;
    DesktopAppearance& operator=(const DesktopAppearance&) = delete;

    ColorScheme colorScheme() const { return m_values.colorScheme; }
    bool hasHighContrast() const { return m_values.highContrast; }
    // As set, not bounded.
    double textScale() const { return m_values.textScale; }
    // The name of the interface's font with style and size, such as "Cantarell 11".
    const std::optional<std::string>& fontName() const { return m_values.fontName; }

private:
    struct Values {
        ColorScheme colorScheme = ColorScheme::noPreference;
        bool highContrast = false;
        double textScale = 1;
        std::optional<std::string> fontName;
        bool operator==(const Values&) const = default;
    };

    Values currentValues() const;
    void update();

    std::function<void()> m_onChange;
    DesktopSetting m_colorScheme;
    DesktopSetting m_theme;
    DesktopSetting m_highContrast;
    TextScaleSetting m_textScale;
    DesktopSetting m_fontName;
    PortalAppearance m_portal;
    Values m_values;
};

} // namespace quorvel::freedesktop
