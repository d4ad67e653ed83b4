// Property-list values, and the platform's conversions between their kinds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/ns_date.h"

namespace quorvel::platform {

struct PropertyListValue;

using PropertyListArray = std::vector<PropertyListValue>;
using PropertyListDictionary = std::map<std::string, PropertyListValue, std::less<>>;
using PropertyListData = std::vector<std::byte>;

// Texts are UTF-8. An integer is unsigned only where it lies above the signed range.
struct PropertyListValue {
    std::variant<bool, std::int64_t, double, std::string, NSDate, PropertyListData,
                 PropertyListArray, PropertyListDictionary, std::uint64_t>
        value;
};

// Null where the dictionary has no such key.
const PropertyListValue* objectForKey(const PropertyListDictionary& dictionary,
                                      std::string_view key);

// The conversions of the platform's numbers and strings. The number at the front of a
// string counts: leading white space is skipped, the rest ignored, too large a number saturates
// at the result's own width. A fraction is cut off; a double out of range saturates as well, and
// not-a-number is 0. A wider integer gives its low bits. A number is true unless it is 0. A date,
// data, array or dictionary gives 0 or false.
std::int32_t intValue(const PropertyListValue& value);
std::int64_t integerValue(const PropertyListValue& value);
float floatValue(const PropertyListValue& value);
bool boolValue(const PropertyListValue& value);

// The text of a string or of a number; nothing for a date, data, array or dictionary.
std::optional<std::string> stringValue(const PropertyListValue& value);

} // namespace quorvel::platform
