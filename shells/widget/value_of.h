// Reads named values of the bundle's objects, whose classes a shell does not know.
#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/key_value_coding.h"

namespace quorvel::shells {

// Absent where the value is not set or has another type.
template <class Kind>
std::optional<Kind> valueOf(const platform::KeyValueCoding& object, std::string_view key) {
    platform::KeyValue value = object.valueForKey(key);
    if (auto* found = std::get_if<Kind>(&value)) {
        return std::move(*found);
    }
    return std::nullopt;
}

} // namespace quorvel::shells
