// Limits for property lists: real settings are small, and a file may come from anyone.
#pragma once

#include <cstddef>

namespace quorvel::freedesktop {

struct PropertyListBudget {
    static constexpr std::size_t fileBytes = std::size_t{16} << 20U;
    static constexpr std::size_t objects = 200'000;
    static constexpr std::size_t depth = 128;
    // All texts and data together. Shared ones count each time.
    static constexpr std::size_t contentBytes = std::size_t{32} << 20U;
};

} // namespace quorvel::freedesktop
