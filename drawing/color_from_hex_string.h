// A colour from a text.
#pragma once

#include <optional>
#include <string_view>

#include "platform/ui_color.h"

namespace quorvel {

// Opaque, always. The text is UTF-8 and its length counts in UTF-16 units, damaged bytes as one
// each. Of seven or nine units the six after the first are red, green and blue in two hexadecimal
// digits each: the first, usually "#", and the last two of nine are ignored. Digits that
// end early leave the smaller number, and none at all black. A text of another length, like an
// absent one, is white.
platform::UIColor colorFromHexString(std::optional<std::string_view> text);

} // namespace quorvel
