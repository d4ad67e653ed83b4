#include "shells/window/window_key.h"

#include <gdk/gdk.h>

namespace quorvel::window {

namespace {

// Neither the locks, such as Caps Lock, nor AltGr.
constexpr unsigned shortcutModifiers = GDK_SHIFT_MASK | GDK_CONTROL_MASK | GDK_MOD1_MASK |
                                       GDK_MOD4_MASK | GDK_SUPER_MASK | GDK_HYPER_MASK |
                                       GDK_META_MASK;

std::optional<WindowKey> plainKey(unsigned key) {
    switch (key) {
    case GDK_KEY_F10:
        return WindowKey::menu;
    case GDK_KEY_Menu:
        return WindowKey::rowMenu;
    default:
        return std::nullopt;
    }
}

std::optional<WindowKey> controlKey(unsigned key) {
    switch (key) {
    case GDK_KEY_w:
        return WindowKey::close;
    case GDK_KEY_q:
        return WindowKey::quit;
    case GDK_KEY_r:
        return WindowKey::refresh;
    case GDK_KEY_question:
    case GDK_KEY_F1:
        return WindowKey::shortcuts;
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<WindowKey> windowKey(unsigned key, unsigned modifiers) {
    const unsigned pressed = modifiers & shortcutModifiers;
    if (pressed == 0) {
        return plainKey(key);
    }
    if (pressed == GDK_SHIFT_MASK && key == GDK_KEY_F10) {
        return WindowKey::rowMenu;
    }
    // The question mark needs Shift on most keyboards.
    const bool hasControl =
        pressed == GDK_CONTROL_MASK ||
        (pressed == (GDK_CONTROL_MASK | GDK_SHIFT_MASK) && key == GDK_KEY_question);
    return hasControl ? controlKey(gdk_keyval_to_lower(key)) : std::nullopt;
}

} // namespace quorvel::window
