#include "freedesktop/bundle/library_search.h"

#include <cstddef>
#include <string_view>

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

namespace quorvel::freedesktop {

namespace {

// Whether `name` lies beside one object of the process; the program itself has no path here.
int liesBeside(dl_phdr_info* object, std::size_t, void* name) {
    const std::string_view path = object->dlpi_name;
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        return 0;
    }
    const std::string beside =
        std::string(path.substr(0, slash + 1)) + *static_cast<const std::string*>(name);
    return ::access(beside.c_str(), R_OK) == 0 ? 1 : 0;
}

bool liesBesideALoadedLibrary(std::string name) {
    return dl_iterate_phdr(liesBeside, &name) != 0;
}

} // namespace

Result<void, std::string> findLibrary(const std::string& name) {
    if (liesBesideALoadedLibrary(name) || dlopen(name.c_str(), RTLD_LAZY | RTLD_LOCAL) != nullptr) {
        return {};
    }
    const char* const reason = dlerror();
    return std::string(reason == nullptr ? name : reason);
}

} // namespace quorvel::freedesktop
