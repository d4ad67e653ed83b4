// The command line of `quorvel-settings`.
#pragma once

#include <optional>
#include <string>

#include "base/result.h"

namespace quorvel::app {

struct SettingsOptions {
    std::optional<std::string> preferences; // an absolute path
    bool wantsHelp = false;
    bool wantsVersion = false;
};

// An error is wrong usage.
Result<SettingsOptions> parseSettingsOptions(int argc, const char* const* argv);

std::string settingsHelp();
std::string settingsVersion();

} // namespace quorvel::app
