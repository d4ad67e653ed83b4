// A text with the one attribute that the widget uses, over its whole length.
#pragma once

#include <optional>
#include <string>

#include "platform/ui_color.h"

namespace quorvel::platform {

struct NSAttributedString {
    std::string string; // UTF-8
    std::optional<UIColor> foregroundColor;
    bool operator==(const NSAttributedString&) const = default;
};

} // namespace quorvel::platform
