// The display on which the widget is shown.
#pragma once

#include "platform/geometry.h"

namespace quorvel::platform {

class Screen {
public:
    virtual ~Screen() = default;
    virtual CGFloat scale() const = 0; // pixels a point
};

} // namespace quorvel::platform
