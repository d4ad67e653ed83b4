// The values that an XML property list writes as text: parses them, and writes numbers.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/property_list.h"

namespace quorvel::freedesktop {

// White space around a number or a date is ignored. Absent: the text is not such a value.

// Decimal, or hexadecimal after "0x", with an optional sign. 64 bits; unsigned only above the
// signed range.
std::optional<platform::PropertyListValue> integerOfText(std::string_view text);

// In the format of strtod() in the "C" locale, "nan" and "inf" included.
std::optional<platform::PropertyListValue> realOfText(std::string_view text);

// "2026-03-10T09:00:00Z"
std::optional<platform::PropertyListValue> dateOfText(std::string_view text);

// Base64. Ignores characters outside the alphabet and everything after the padding.
platform::PropertyListData dataOfText(std::string_view text);

// As short as realOfText() can read it unchanged, without an exponent; "nan" and "inf" included.
std::string textOfReal(double number);

} // namespace quorvel::freedesktop
