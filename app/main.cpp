// The command: one widget, driven from a terminal.
#include "app/commands.h"
#include "app/window_start.h"
#include "freedesktop/log/library_messages.h"

int main(int argc, char** argv) {
    quorvel::freedesktop::keepLibraryMessagesOnOneLine();
    return quorvel::app::runProgram(argc, argv, [argv](const quorvel::app::CommandLine&) {
        return quorvel::app::becomeWindowProgram(argv);
    });
}
