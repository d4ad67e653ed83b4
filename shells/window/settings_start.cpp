#include "shells/window/settings_start.h"

#include <utility>

#include "freedesktop/launch/settings_program.h"
#include "shells/window/dialogs.h"

namespace quorvel::window {

SettingsStart::SettingsStart(std::vector<std::string> command, std::string file)
    : m_command(std::move(command))
    , m_file(std::make_shared<const std::string>(std::move(file))) {}

SettingsStart::~SettingsStart() = default;

void SettingsStart::start(GtkWindow* window, freedesktop::LaunchContext& context) {
    const std::weak_ptr<const std::string> weak = m_file;
    const auto showHelp = [window, weak] {
        if (const auto file = weak.lock()) {
            showSettingsHelp(window, *file);
        }
    };
    if (!freedesktop::startSettingsProgram(m_command, context, showHelp)) {
        showHelp();
    }
}

} // namespace quorvel::window
