#include "freedesktop/preferences/reported_property_list.h"

#include <utility>

#include "base/translatable_text.h"
#include "freedesktop/io/regular_file.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/property_list_budget.h"
#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {
namespace {

// `error` as from parsePropertyList().
Error unreadable(const std::string& path, const Error& error) {
    return {translated(error.what), error.where.empty() ? path : path + ':' + error.where,
            translated("mend the file, or move it away")};
}

template <class Kind>
Result<Kind> parseAs(std::span<const std::byte> bytes, const std::string& path,
                     const char* wrongKind) {
    auto list = parsePropertyList(bytes);
    if (!list) {
        return unreadable(path, list.error());
    }
    auto* const wanted = std::get_if<Kind>(&list->value);
    if (wanted == nullptr) {
        return unreadable(path, {wrongKind, {}, {}});
    }
    return std::move(*wanted);
}

} // namespace

Result<std::optional<std::vector<std::byte>>> readListBytes(const std::string& path) {
    auto bytes = readRegularFile(path, PropertyListBudget::fileBytes);
    return bytes ? std::move(bytes) : unreadable(path, bytes.error());
}

Result<platform::PropertyListDictionary> parseDictionary(std::span<const std::byte> bytes,
                                                         const std::string& path) {
    return parseAs<platform::PropertyListDictionary>(bytes, path,
                                                     translatable("it holds no dictionary"));
}

Result<platform::PropertyListArray> parseArray(std::span<const std::byte> bytes,
                                               const std::string& path) {
    return parseAs<platform::PropertyListArray>(bytes, path, translatable("it holds no array"));
}

} // namespace quorvel::freedesktop
