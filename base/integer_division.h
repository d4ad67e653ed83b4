// Divisions that round towards one side for negative values too. The divisor is positive.
#pragma once

#include <cstdint>

namespace quorvel {

constexpr std::int64_t floorDivision(std::int64_t value, std::int64_t divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

// At least 0 and less than the divisor.
constexpr std::int64_t floorRemainder(std::int64_t value, std::int64_t divisor) {
    return value - floorDivision(value, divisor) * divisor;
}

constexpr std::int64_t ceilingDivision(std::int64_t value, std::int64_t divisor) {
    return value / divisor + (value % divisor > 0 ? 1 : 0);
}

} // namespace quorvel
