// Owns what libplist allocates.
#pragma once

#include <cstdlib>
#include <memory>

#include <plist/plist.h>

namespace quorvel::freedesktop {

struct PlistNodeDeleter {
    void operator()(void* node) const { plist_free(node); }
};
using PlistNode = std::unique_ptr<void, PlistNodeDeleter>;

struct MallocDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Malloced = std::unique_ptr<T, MallocDeleter>;

} // namespace quorvel::freedesktop
