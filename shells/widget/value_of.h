// Reads values of the bundle's objects, which a shell knows by their names only.
#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/key_value_coding.h"

namespace quorvel::shells {

// Absent where the value is not set or of another kind.
template <class Kind>
std::optional<Kind> valueOf(const platform::KeyValueCoding& object, std::string_view key) {
    platform::KeyValue value = object.valueForKey(key);
    if (auto* held = std::get_if<Kind>(&value)) {
        return std::move(*held);
    }
    return std::nullopt;
}

} // namespace quorvel::shells
