#include "freedesktop/io/module_function.h"

#include <dlfcn.h>

namespace quorvel::freedesktop {

namespace {

std::string loaderMessage() {
    const char* const message = dlerror();
    return message != nullptr ? message : "";
}

} // namespace

Result<LoadedModule, std::string> LoadedModule::load(const std::string& file) {
    // Lazily for the libraries that a module brings, as few of their functions are called. The
    // module itself is linked to be bound at once.
    void* const handle = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
    if (handle == nullptr) {
        return loaderMessage();
    }
    return LoadedModule(handle);
}

Result<void*, std::string> LoadedModule::function(const char* name) const {
    void* const function = dlsym(m_handle, name);
    if (function == nullptr) {
        return loaderMessage();
    }
    return function;
}

Result<void*, std::string> moduleFunction(const std::string& file, const char* name) {
    const auto module = LoadedModule::load(file);
    if (!module) {
        return module.error();
    }
    return module->function(name);
}

} // namespace quorvel::freedesktop
