// The one symbol of the module that wraps the libraries.
#pragma once

#include "freedesktop/rendering/rendering.h"

namespace quorvel::freedesktop {

// The result belongs to the caller; null: there is not enough memory.
using MakeRendering = Rendering* (*)(const RenderingOptions& options);
inline constexpr const char* makeRenderingSymbol = "quorvelMakeRendering";

} // namespace quorvel::freedesktop
