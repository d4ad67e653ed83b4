// The program that runs `quorvel show`: the only one that loads a toolkit.
#include <memory>

#include "app/commands.h"
#include "app/language_choice.h"
#include "app/show_command.h"
#include "freedesktop/desktop/linked_desktop.h"
#include "freedesktop/log/library_messages.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "shells/window/toolkit.h"

int main(int argc, char** argv) {
    quorvel::freedesktop::printLibraryMessagesOnOneLine();
    quorvel::app::chooseProgramLanguage(argc, argv);
    quorvel::window::prepareToolkit();
    return quorvel::app::runProgram(argc, argv,
                                    {quorvel::app::showInWindow,
                                     quorvel::freedesktop::makeLinkedRendering,
                                     std::make_shared<quorvel::freedesktop::LinkedDesktop>()});
}
