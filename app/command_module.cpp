// The one symbol of the module with the commands, which the program `quorvel` loads.
#include <memory>

#include "app/commands.h"
#include "app/language_choice.h"
#include "app/window_start.h"
#include "freedesktop/bundle/program_folders.h"
#include "freedesktop/desktop/loaded_desktop.h"
#include "freedesktop/log/library_messages.h"
#include "freedesktop/rendering/loaded_rendering.h"

namespace {

using namespace quorvel;

std::unique_ptr<freedesktop::Rendering>
makeLoadedRendering(const freedesktop::RenderingOptions& options) {
    return std::make_unique<freedesktop::LoadedRendering>(
        freedesktop::programFolders().renderingModule, options);
}

} // namespace

// Returns the exit status.
extern "C" [[gnu::visibility("default")]] int quorvelRunCommand(int argc, char** argv) {
    freedesktop::printLibraryMessagesOnOneLine();
    app::chooseProgramLanguage(argc, argv);
    const auto show = [argv](const app::CommandLine&) -> app::CommandResult<void> {
        return app::replaceByWindowProgram(argv);
    };
    return app::runProgram(argc, argv,
                           {show, makeLoadedRendering,
                            std::make_shared<freedesktop::LoadedDesktop>(
                                freedesktop::programFolders().desktopModule)});
}
