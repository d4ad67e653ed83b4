// The command: one widget, driven from a terminal.
#include "app/commands.h"

int main(int argc, char** argv) {
    return quorvel::app::runProgram(argc, argv);
}
