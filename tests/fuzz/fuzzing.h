// What the fuzz targets share: an invariant that ends the run, and the processor's time.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace quorvel::fuzzing {

inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

// Of this process, in milliseconds. The wall clock would blame an input for a busy machine.
inline double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace quorvel::fuzzing
