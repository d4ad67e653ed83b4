#include "freedesktop/preferences/binary_property_list_edit.h"

#include <cstdint>
#include <type_traits>

#include "base/translatable_text.h"
#include "freedesktop/preferences/binary_property_list_check.h"
#include "freedesktop/preferences/plist_handles.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListValue;

// Null for dates, data and dictionaries.
plist_t nodeOf(const PropertyListValue& value) {
    return std::visit(
        [](const auto& held) -> plist_t {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, bool>) {
                return plist_new_bool(held ? 1 : 0);
            } else if constexpr (std::is_same_v<Held, double>) {
                return plist_new_real(held);
            } else if constexpr (std::is_arithmetic_v<Held>) {
                return plist_new_uint(static_cast<std::uint64_t>(held));
            } else if constexpr (std::is_same_v<Held, std::string>) {
                return plist_new_string(held.c_str());
            } else if constexpr (std::is_same_v<Held, PropertyListArray>) {
                const plist_t array = plist_new_array();
                for (const PropertyListValue& item : held) {
                    if (const plist_t node = nodeOf(item)) {
                        plist_array_append_item(array, node);
                    }
                }
                return array;
            } else {
                return nullptr;
            }
        },
        value.value);
}

Result<std::string> bytesOf(plist_t root) {
    char* bytes = nullptr;
    std::uint32_t size = 0;
    static_cast<void>(plist_to_bin(root, &bytes, &size));
    const Malloced<char> owned(bytes);
    if (!owned) {
        return Error{translatable("there is not enough memory"), {}, {}};
    }
    return std::string(owned.get(), size);
}

} // namespace

Result<std::string> changedBinaryDictionary(std::span<const std::byte> bytes,
                                            const DictionaryChanges& changes) {
    const auto textsWithNul = checkBinaryPropertyList(bytes);
    if (!textsWithNul || !textsWithNul->empty()) {
        return Error{translatable("it holds texts that cannot be written again"), {}, {}};
    }
    plist_t root = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::uint32_t>(bytes.size()), &root);
    const PlistNode owned(root);
    if (plist_get_node_type(root) != PLIST_DICT) { // a reference, which is read as a dictionary
        return Error{translatable("it holds no dictionary"), {}, {}};
    }
    for (const auto& [key, value] : changes) {
        if (const plist_t node = value ? nodeOf(*value) : nullptr) {
            plist_dict_set_item(root, key.c_str(), node);
        } else if (plist_dict_get_item(root, key.c_str()) != nullptr) {
            plist_dict_remove_item(root, key.c_str());
        }
    }
    return bytesOf(root);
}

Result<std::string> binaryOfArray(const PropertyListArray& items) {
    const PlistNode root(nodeOf({items}));
    return bytesOf(root.get());
}

} // namespace quorvel::freedesktop
