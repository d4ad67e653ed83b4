// Where the window lies as a layer of the desktop instead of as a window; names no type of the
// toolkit.
#pragma once

#include <string>

#include "platform/geometry.h"

namespace quorvel::window {

// From the lowest to the highest: below and above the windows, and above what covers the screen.
enum class Layer { background, bottom, top, overlay };

struct Edges {
    bool top = false;
    bool right = false;
    bool bottom = false;
    bool left = false;
    bool operator==(const Edges&) const = default;
};

// In points; an edge without an anchor ignores its own.
struct Margins {
    int top = 0;
    int right = 0;
    int bottom = 0;
    int left = 0;
    bool operator==(const Margins&) const = default;
};

struct LayerOptions {
    Layer layer = Layer::top;
    Edges anchor; // opposite edges stretch the agenda; without any it is centred
    Margins margins;
    std::string output; // such as "DP-1"; empty: the desktop's choice
};

// The frame of an agenda of that size within the area that an output leaves to windows.
platform::CGRect layerFrame(const LayerOptions& options, platform::CGRect area,
                            platform::CGSize size);
// The greatest height of an agenda there.
platform::CGFloat heightBetweenMargins(const LayerOptions& options, platform::CGFloat height);

} // namespace quorvel::window
