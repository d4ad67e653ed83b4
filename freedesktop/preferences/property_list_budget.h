// How much of a property list is read. Files come from strangers; settings are small.
#pragma once

#include <cstddef>

namespace quorvel::freedesktop {

struct PropertyListBudget {
    static constexpr std::size_t fileBytes = std::size_t{16} << 20U;
    static constexpr std::size_t objects = 200'000;
    static constexpr std::size_t depth = 128;
    // Of all texts and data together, those that are shared counted each time.
    static constexpr std::size_t contentBytes = std::size_t{32} << 20U;
};

} // namespace quorvel::freedesktop
