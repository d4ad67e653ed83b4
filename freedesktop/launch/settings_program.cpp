#include "freedesktop/launch/settings_program.h"

#include <utility>

#include "freedesktop/launch/launch_context.h"
#include "freedesktop/launch/process_start.h"

namespace quorvel::freedesktop {

Result<void> startSettingsProgram(const std::vector<std::string>& command, LaunchContext& context,
                                  std::function<void()> onFailed) {
    const std::string token = context.makeToken("org.quorvel.Settings.desktop");
    const auto started = launch::startProcess({command, {}, token}, std::move(onFailed));
    if (!started) {
        context.discardToken(token);
    }
    return started;
}

} // namespace quorvel::freedesktop
