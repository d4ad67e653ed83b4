// Loads the program's own modules, which wrap libraries that not every start needs, and libraries
// that it calls by the names of their functions.
#pragma once

#include <string>

#include "base/result.h"

namespace quorvel::freedesktop {

// Never unloaded, as libraries leave threads and types behind. The errors are the loader's
// messages.
class LoadedModule {
public:
    // `file` is a path, or the name of a library in the system's folders.
    static Result<LoadedModule, std::string> load(const std::string& file);

    Result<void*, std::string> function(const char* name) const; // never null

private:
    explicit LoadedModule(void* handle)
        : m_handle(handle) {}

    void* m_handle; // never null
};

// The function of that name in the module, never null.
Result<void*, std::string> moduleFunction(const std::string& file, const char* name);

} // namespace quorvel::freedesktop
