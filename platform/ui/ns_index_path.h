// A row's place in a table.
#pragma once

#include <compare>
#include <cstdint>

namespace quorvel::platform {

using NSInteger = std::int64_t;

struct NSIndexPath {
    NSInteger section = 0;
    NSInteger row = 0;
    auto operator<=>(const NSIndexPath&) const = default;
};

} // namespace quorvel::platform
