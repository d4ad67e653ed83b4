// What a process holds: the figures that grow where something is left behind.
#pragma once

#include <sys/types.h>

namespace quorvel::phosh {

struct ProcessFigures {
    long privateDirtyKilobytes = 0;
    int threads = 0;
    int descriptors = 0;
    int fileWatches = 0; // of all its inotify descriptors
};

// Zeros for a process that has ended.
ProcessFigures figuresOf(pid_t process);

} // namespace quorvel::phosh
