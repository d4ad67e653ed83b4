#include "shells/widget/appearance.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_window.h"
#include "shells/widget/hosted_widget.h"
#include "shells/widget/value_of.h"

namespace quorvel::shells {

using platform::CGFloat;
using platform::UIColor;
using platform::UILabelColors;

namespace {

constexpr CGFloat hairlineOpacity = 0.18;
constexpr CGFloat strongHairlineOpacity = 0.5; // for high contrast
constexpr CGFloat translucentWindow = 0.9;

constexpr UIColor colorOf(unsigned rgb) {
    return {static_cast<CGFloat>(rgb >> 16U & 0xFFU) / 255,
            static_cast<CGFloat>(rgb >> 8U & 0xFFU) / 255, static_cast<CGFloat>(rgb & 0xFFU) / 255,
            1};
}

// The backdrop is near black and a little blue, as the darkened wallpaper behind a notification
// centre.
constexpr Appearance darkAppearance{colorOf(0x171A21), UIColor::whiteColor(), colorOf(0xA6A9B0),
                                    hairlineOpacity, translucentWindow};
constexpr Appearance lightAppearance{colorOf(0xF7F7F9), colorOf(0x17191E), colorOf(0x5B5F69),
                                     hairlineOpacity, translucentWindow};
constexpr Appearance highContrastDark{UIColor::blackColor(), UIColor::whiteColor(),
                                      UIColor::whiteColor(), strongHairlineOpacity, 1};
constexpr Appearance highContrastLight{UIColor::whiteColor(), UIColor::blackColor(),
                                       UIColor::blackColor(), strongHairlineOpacity, 1};

// What the user has left to the host.
struct OpenChoices {
    bool title = false;
    bool subtitle = false;
    bool caption = false;
};

OpenChoices openChoices(HostedWidget& widget) {
    const auto chosen = valueOf<std::vector<std::string>>(widget.view(), "chosenColors")
                            .value_or(std::vector<std::string>{});
    const auto isOpen = [&chosen](std::string_view key) {
        return std::ranges::find(chosen, key) == chosen.end();
    };
    // Titles in the colours of the calendars may outlast the key that asked for them.
    const bool hasCalendarColors =
        valueOf<bool>(widget.processWideValues(), "titleColorSameAsCalendarColor").value_or(false);
    return {isOpen("textColor") && !hasCalendarColors, isOpen("subtitleTextColor"),
            isOpen("dateTextColor")};
}

UILabelColors labelColors(const Appearance& appearance, const OpenChoices& open) {
    const auto colorIf = [](bool isOpen, const UIColor& color) {
        return isOpen ? std::optional(color) : std::nullopt;
    };
    return {colorIf(open.title, appearance.title), colorIf(open.subtitle, appearance.caption),
            colorIf(open.caption, appearance.caption)};
}

// Where the titles have the calendars' colours, no single one of them can be the separators'.
UIColor separatorColor(const Appearance& appearance, const OpenChoices& open,
                       HostedWidget& widget) {
    const auto& values = widget.processWideValues();
    UIColor color = appearance.title;
    if (!open.title && !valueOf<bool>(values, "titleColorSameAsCalendarColor").value_or(false)) {
        color = valueOf<UIColor>(values, "textColor").value_or(color);
    }
    color.alpha *= appearance.separatorOpacity;
    return color;
}

} // namespace

Appearance standardAppearance(AppearanceKind kind) {
    switch (kind) {
    case AppearanceKind::dark:
        break;
    case AppearanceKind::light:
        return lightAppearance;
    case AppearanceKind::highContrastDark:
        return highContrastDark;
    case AppearanceKind::highContrastLight:
        return highContrastLight;
    }
    return darkAppearance;
}

AppearanceKind appearanceKind(freedesktop::ColorScheme scheme, bool highContrast) {
    if (scheme == freedesktop::ColorScheme::light) {
        return highContrast ? AppearanceKind::highContrastLight : AppearanceKind::light;
    }
    return highContrast ? AppearanceKind::highContrastDark : AppearanceKind::dark;
}

UIColor windowBackdrop(const Appearance& appearance) {
    UIColor color = appearance.backdrop;
    color.alpha = appearance.windowOpacity;
    return color;
}

void applyAppearance(const Appearance& appearance, HostedWidget& widget) {
    if (!widget.hasView()) {
        return;
    }
    const OpenChoices open = openChoices(widget);
    widget.view().window()->setLabelColors(labelColors(appearance, open));
    if (platform::UITableView* table = widget.table()) {
        table->setSeparatorColor(separatorColor(appearance, open, widget));
        table->setPaintsTrailingSeparators(false);
    }
}

} // namespace quorvel::shells
