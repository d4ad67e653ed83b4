// What `quorvel --version` prints.
#pragma once

#include <string_view>

namespace quorvel::app {

inline constexpr std::string_view versionText = "quorvel " QUORVEL_VERSION "\n";

} // namespace quorvel::app
