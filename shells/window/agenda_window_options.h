// What the user can choose about the agenda's window; names no type of the toolkit.
#pragma once

#include <optional>
#include <string>

#include "platform/geometry.h"
#include "platform/ui_color.h"
#include "shells/window/layer_options.h"

namespace quorvel::window {

struct AgendaWindowOptions {
    std::string controllerName; // a class of the bundle; empty: the bundle's principal class
    std::optional<platform::CGFloat> width;    // points; absent: the width that the widget prefers
    bool isDecorated = false;                  // of a plain window
    std::optional<LayerOptions> layer;         // absent: a plain window
    std::string layerModule;                   // the path of quorvel-layer-shell.so
    std::optional<platform::UIColor> backdrop; // absent: transparent
};

} // namespace quorvel::window
