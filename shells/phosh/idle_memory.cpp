#include "shells/phosh/idle_memory.h"

#include <malloc.h>

namespace quorvel::phosh {

#ifdef M_TRIM_THRESHOLD
void limitIdleMemory() {
    constexpr int firstThreshold = 128 * 1024; // bytes; the allocator's own before it raises it
    mallopt(M_TRIM_THRESHOLD, firstThreshold);
}

void returnIdleMemory() {
    malloc_trim(0);
}
#else
void limitIdleMemory() {}
void returnIdleMemory() {}
#endif

} // namespace quorvel::phosh
