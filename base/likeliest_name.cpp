#include "base/likeliest_name.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "base/ascii_text.h"

namespace quorvel {
namespace {

constexpr std::size_t longestName = 64;

using Row = std::array<std::size_t, longestName + 1>;

// Restricted Damerau-Levenshtein distance: a pair that was swapped is not changed again.
std::size_t distance(std::string_view from, std::string_view to) {
    Row beforeLast{};
    Row last{};
    Row current{};
    for (std::size_t j = 0; j <= to.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= from.size(); ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t change = from[i - 1] == to[j - 1] ? 0 : 1;
            current[j] = std::min({last[j] + 1, current[j - 1] + 1, last[j - 1] + change});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                current[j] = std::min(current[j], beforeLast[j - 2] + 1);
            }
        }
        beforeLast = last;
        last = current;
    }
    return last[to.size()];
}

// A third of the letters may be wrong.
bool isNear(std::size_t distance, std::string_view misspelt, std::string_view name) {
    return distance <= std::max<std::size_t>(1, std::min(misspelt.size(), name.size()) / 3);
}

} // namespace

std::optional<std::string_view> likeliestName(std::string_view misspelt,
                                              std::span<const std::string_view> candidates) {
    std::optional<std::string_view> likeliest;
    std::size_t least = longestName + 1;
    const std::string wanted = asciiLowerCase(misspelt);
    for (const std::string_view candidate : candidates) {
        if (candidate.size() > longestName || wanted.size() > longestName) {
            continue;
        }
        const std::size_t changes = distance(wanted, asciiLowerCase(candidate));
        if (changes < least && isNear(changes, misspelt, candidate)) {
            least = changes;
            likeliest = candidate;
        }
    }
    return likeliest;
}

} // namespace quorvel
