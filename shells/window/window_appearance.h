// How the desktop wants the window to look: the agenda's colours, and the toolkit's theme for the
// header and the menus.
#pragma once

#include <functional>
#include <utility>

#include "freedesktop/session/desktop_appearance.h"
#include "shells/widget/appearance.h"

namespace quorvel::window {

class WindowAppearance {
public:
    // Call startToolkit() before. Make it before anything that needs the theme.
    WindowAppearance();
    WindowAppearance(const WindowAppearance&) = delete;
    WindowAppearance& operator=(const WindowAppearance&) = delete;

    const shells::Appearance& colors() const { return m_colors; }
    double textScale() const { return m_desktop.textScale(); }
    // Called after the theme has followed a change of the desktop. Null: nothing.
    void setOnChange(std::function<void()> onChange) { m_onChange = std::move(onChange); }

private:
    void follow();

    std::function<void()> m_onChange;
    freedesktop::DesktopAppearance m_desktop;
    shells::Appearance m_colors;
};

} // namespace quorvel::window
