// Makes JSON documents. Only files of this folder may include this header, which names the
// library's types.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "platform/geometry.h"
#include "platform/key_value_coding.h"
#include "platform/ui_color.h"

namespace quorvel::headless {

using Json = nlohmann::ordered_json; // in the order in which members are added

// Whole numbers have no fraction; others have the shortest form that is parsed as the same number.
// Null for a number that is not finite.
Json numberJson(double number);
Json sizeJson(platform::CGSize size);
Json rectJson(const platform::CGRect& rect);
Json colorJson(const std::optional<platform::UIColor>& color); // "#RRGGBBAA" or null
Json textJson(const std::optional<std::string>& text);
// Null for a value that is not set, and for pictures, views and records.
Json valueJson(const platform::KeyValue& value);

// Indented, with a newline at the end. Invalid UTF-8 becomes U+FFFD.
std::string documentText(const Json& json);

} // namespace quorvel::headless
