// The seed of the tests that do things at random, so that each run can be repeated.
#pragma once

#include <cstdlib>
#include <iostream>

namespace quorvel {

// QUORVEL_SEED of the environment; without it always the same. Says which.
inline unsigned testSeed() {
    const char* chosen = std::getenv("QUORVEL_SEED");
    const auto seed =
        chosen != nullptr ? static_cast<unsigned>(std::strtoul(chosen, nullptr, 10)) : 20260310U;
    std::cout << "seed: " << seed << " (QUORVEL_SEED chooses another)\n";
    return seed;
}

} // namespace quorvel
