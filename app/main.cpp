// The command `quorvel`.
#include "app/commands.h"
#include "app/language_choice.h"
#include "app/window_start.h"
#include "freedesktop/log/library_messages.h"

int main(int argc, char** argv) {
    using namespace quorvel::app;
    quorvel::freedesktop::printLibraryMessagesOnOneLine();
    chooseProgramLanguage(argc, argv);
    return runProgram(argc, argv, [argv](const CommandLine&) -> CommandResult<void> {
        return replaceByWindowProgram(argv);
    });
}
