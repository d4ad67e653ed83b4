// Starts the window of the settings.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/result.h"

namespace quorvel::freedesktop {

class LaunchContext;

// `command`: the program and its arguments. Starts it without a shell and does not wait for it.
// `onFailed` is called while the default main context runs if the program ends with an error before
// the user can have seen its window. The context gives the token by which the window comes to the
// front.
Result<void> startSettingsProgram(const std::vector<std::string>& command, LaunchContext& context,
                                  std::function<void()> onFailed);

} // namespace quorvel::freedesktop
