// Converts an optional value or a pointer into a value that is read by name.
#pragma once

#include <memory>
#include <optional>

#include "platform/key_value_coding.h"

namespace quorvel {

template <class Value>
platform::KeyValue keyValueOf(const std::optional<Value>& value) {
    return value ? platform::KeyValue(*value) : platform::KeyValue();
}

// `Held` is the type under which the variant stores the pointer.
template <class Held, class Object>
platform::KeyValue keyValueOfObject(const std::shared_ptr<Object>& object) {
    return object ? platform::KeyValue(std::shared_ptr<Held>(object)) : platform::KeyValue();
}

} // namespace quorvel
