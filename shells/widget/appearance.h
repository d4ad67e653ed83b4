// The host's appearance: the backdrop of the widget, and the colours that the user left to the
// host.
#pragma once

#include "freedesktop/session/color_scheme.h"
#include "platform/geometry.h"
#include "platform/ui_color.h"

namespace quorvel::shells {

class HostedWidget;

enum class AppearanceKind { dark, light, highContrastDark, highContrastLight };

struct Appearance {
    platform::UIColor backdrop; // opaque
    platform::UIColor title;
    platform::UIColor caption; // of dates, locations and the host's own lines
    // The alpha of the separators, which have the colour of the titles.
    platform::CGFloat separatorOpacity = 0;
    // The alpha of the backdrop of a window on a desktop.
    platform::CGFloat windowOpacity = 1;
    bool operator==(const Appearance&) const = default;
};

// On its backdrop every text has a contrast of at least 4.5:1, with high contrast 7:1.
Appearance standardAppearance(AppearanceKind kind);

// For what the user prefers on the desktop. The widget is dark unless the user prefers light.
AppearanceKind appearanceKind(freedesktop::ColorScheme scheme, bool highContrast);

platform::UIColor windowBackdrop(const Appearance& appearance);

// Gives the widget's window the colours of the appearance for the texts whose colour the user has
// not chosen, and the list its separators, without one below the last row. Call it after each
// presentation, as that loads the settings and may replace the list. Without effect where the
// widget has no view.
void applyAppearance(const Appearance& appearance, HostedWidget& widget);

} // namespace quorvel::shells
