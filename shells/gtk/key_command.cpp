#include "shells/gtk/key_command.h"

#include <algorithm>

#include <gdk/gdk.h>

namespace quorvel::gtk {

namespace {

// Neither the locks, such as Caps Lock, nor AltGr, which selects other characters.
constexpr unsigned shortcutModifiers = GDK_SHIFT_MASK | GDK_CONTROL_MASK | GDK_MOD1_MASK |
                                       GDK_MOD4_MASK | GDK_SUPER_MASK | GDK_HYPER_MASK |
                                       GDK_META_MASK;

} // namespace

std::optional<KeyCommand> keyCommand(unsigned key, unsigned modifiers) {
    if ((modifiers & shortcutModifiers) != 0) {
        return std::nullopt;
    }
    switch (key) {
    case GDK_KEY_Up:
    case GDK_KEY_KP_Up:
        return KeyCommand::up;
    case GDK_KEY_Down:
    case GDK_KEY_KP_Down:
        return KeyCommand::down;
    case GDK_KEY_Page_Up:
    case GDK_KEY_KP_Page_Up:
        return KeyCommand::pageUp;
    case GDK_KEY_Page_Down:
    case GDK_KEY_KP_Page_Down:
        return KeyCommand::pageDown;
    case GDK_KEY_Home:
    case GDK_KEY_KP_Home:
        return KeyCommand::first;
    case GDK_KEY_End:
    case GDK_KEY_KP_End:
        return KeyCommand::last;
    case GDK_KEY_Return:
    case GDK_KEY_ISO_Enter:
    case GDK_KEY_KP_Enter:
    case GDK_KEY_space:
    case GDK_KEY_KP_Space:
        return KeyCommand::runAction;
    case GDK_KEY_F5:
        return KeyCommand::present;
    case GDK_KEY_Escape:
        return KeyCommand::close;
    default:
        return std::nullopt;
    }
}

std::optional<std::size_t> movedFocus(KeyCommand command, std::optional<std::size_t> focused,
                                      std::size_t rowCount, std::size_t pageLength) {
    if (rowCount == 0) {
        return std::nullopt;
    }
    const std::size_t last = rowCount - 1;
    // Without a focus, the first key puts it on the row at that end.
    const auto backward = [&](std::size_t rows) {
        return focused ? *focused - std::min(rows, *focused) : last;
    };
    const auto forward = [&](std::size_t rows) {
        return focused ? std::min(*focused + rows, last) : 0;
    };
    switch (command) {
    case KeyCommand::up:
        return backward(1);
    case KeyCommand::down:
        return forward(1);
    case KeyCommand::pageUp:
        return backward(pageLength);
    case KeyCommand::pageDown:
        return forward(pageLength);
    case KeyCommand::first:
        return 0;
    case KeyCommand::last:
        return last;
    case KeyCommand::runAction:
    case KeyCommand::present:
    case KeyCommand::close:
        break;
    }
    return std::nullopt;
}

} // namespace quorvel::gtk
