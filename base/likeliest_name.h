// Finds the name that a person meant who has misspelt it.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace quorvel {

// The candidate that needs the fewest letters inserted, removed, replaced or swapped with their
// neighbour; upper and lower case of ASCII are the same. Of equals, the first. Absent: none is near
// enough to be meant. Texts beyond 64 bytes are near nothing.
std::optional<std::string_view> likeliestName(std::string_view misspelt,
                                              std::span<const std::string_view> candidates);

} // namespace quorvel
