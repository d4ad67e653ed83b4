#include "freedesktop/io/module_function.h"

#include <dlfcn.h>

namespace quorvel::freedesktop {

namespace {

std::string loaderMessage() {
    const char* const message = dlerror();
    return message != nullptr ? message : "";
}

} // namespace

Result<void*, std::string> moduleFunction(const std::string& file, const char* name) {
    void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (handle == nullptr) {
        return loaderMessage();
    }
    void* const function = dlsym(handle, name);
    if (function == nullptr) {
        return loaderMessage();
    }
    return function;
}

} // namespace quorvel::freedesktop
