// The texts of a row that are wider than their place, so that the row shows only their beginnings.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quorvel::platform {
class TextMeasurer;
} // namespace quorvel::platform

namespace quorvel::shells {

class HostedWidget;

// In the order of the cell's labels, each of bounded length. Empty where the row is not visible.
std::vector<std::string> cutTexts(const HostedWidget& widget, std::size_t row,
                                  platform::TextMeasurer& textMeasurer);

} // namespace quorvel::shells
