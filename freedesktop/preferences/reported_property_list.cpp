#include "freedesktop/preferences/reported_property_list.h"

#include <utility>

#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {
namespace {

Error unreadable(const std::string& path, std::string what, const std::string& position) {
    return {std::move(what), position.empty() ? path : path + ':' + position,
            "mend the file, or move it away"};
}

template <class Kind>
Result<Kind> readAs(const std::string& path, const char* wrongKind) {
    auto list = readPropertyListFile(path);
    if (!list) {
        return unreadable(path, list.error().what, list.error().where);
    }
    if (!*list) {
        return Kind();
    }
    auto* const wanted = std::get_if<Kind>(&(*list)->value);
    if (wanted == nullptr) {
        return unreadable(path, wrongKind, {});
    }
    return std::move(*wanted);
}

} // namespace

Result<platform::PropertyListDictionary> readDictionaryFile(const std::string& path) {
    return readAs<platform::PropertyListDictionary>(path, "it holds no dictionary");
}

Result<platform::PropertyListArray> readArrayFile(const std::string& path) {
    return readAs<platform::PropertyListArray>(path, "it holds no array");
}

} // namespace quorvel::freedesktop
