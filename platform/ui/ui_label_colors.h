// Colours that a host gives to texts by what they are, without changing the labels themselves.
#pragma once

#include <optional>

#include "platform/ui_color.h"

namespace quorvel::platform {

// What a label shows. `other` has no colour but its own.
enum class UILabelRole { other, title, subtitle, caption };

// Absent: the label's own colour.
struct UILabelColors {
    std::optional<UIColor> title;
    std::optional<UIColor> subtitle;
    std::optional<UIColor> caption;
    bool operator==(const UILabelColors&) const = default;

    std::optional<UIColor> of(UILabelRole role) const {
        switch (role) {
        case UILabelRole::title:
            return title;
        case UILabelRole::subtitle:
            return subtitle;
        case UILabelRole::caption:
            return caption;
        case UILabelRole::other:
            break;
        }
        return std::nullopt;
    }
};

} // namespace quorvel::platform
