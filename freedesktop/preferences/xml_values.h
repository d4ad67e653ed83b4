// The values that stand as text in an XML property list.
#pragma once

#include <optional>
#include <string_view>

#include "platform/property_list.h"

namespace quorvel::freedesktop {

// White space around a number or a date is ignored. Absent: the text is no such value.

// Decimal, or hexadecimal after "0x"; a sign may stand before. Within 64 bits: unsigned above the
// signed range.
std::optional<platform::PropertyListValue> integerOfText(std::string_view text);

// As the C library reads it, with a decimal point in every locale; also "nan" and "inf".
std::optional<platform::PropertyListValue> realOfText(std::string_view text);

// "2026-03-10T09:00:00Z"
std::optional<platform::PropertyListValue> dateOfText(std::string_view text);

// Base64. What is not of its alphabet is ignored, and so is what follows the padding.
platform::PropertyListData dataOfText(std::string_view text);

} // namespace quorvel::freedesktop
