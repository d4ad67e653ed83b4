// How much freed memory the allocator retains in the shell's process, which runs for weeks.
// GNU's allocator offers what these functions use; with another C library they do nothing.
#pragma once

namespace quorvel::phosh {

// The allocator raises its threshold for returning memory with each large block that is freed, and
// then retains some megabytes for each thread that has read a calendar. Call it once, before the
// first thread: the threshold stays where it begins, for the whole process.
void limitIdleMemory();

// Returns what the allocator retains now. For any thread.
void returnIdleMemory();

} // namespace quorvel::phosh
