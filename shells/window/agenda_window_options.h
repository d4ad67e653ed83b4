// What the user can choose about the agenda's window; names no type of the toolkit.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/geometry.h"
#include "platform/ui_color.h"
#include "shells/window/layer_options.h"

namespace quorvel::window {

struct AgendaWindowOptions {
    std::string controllerName; // a class of the bundle; empty: the bundle's principal class
    std::optional<platform::CGFloat> width; // points; absent: the width that the widget prefers
    std::optional<LayerOptions> layer;      // absent: a plain window
    std::string layerModule;                // the path of quorvel-layer-shell.so
    // Chosen by the user; an absent colour is transparent. Without a choice, the backdrop is that
    // of the desktop's appearance.
    std::optional<std::optional<platform::UIColor>> backdrop;
    std::string calendarsManual;              // the file of the manual on calendars
    std::string settingsFile;                 // to show to the user
    std::vector<std::string> settingsCommand; // opens the window of the settings
    std::string geometryFile; // see window_geometry.h; empty: the geometry is not stored
};

} // namespace quorvel::window
