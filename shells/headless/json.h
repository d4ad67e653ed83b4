// JSON documents as this folder writes them; no header that others include names these types.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "platform/geometry.h"
#include "platform/key_value_coding.h"
#include "platform/ui_color.h"

namespace quorvel::headless {

using Json = nlohmann::ordered_json; // members stay in the order of their addition

// A whole number without a fraction, others in the shortest form that reads back the same; null
// for a number that is not finite.
Json numberJson(double number);
Json sizeJson(platform::CGSize size);
Json rectJson(const platform::CGRect& rect);
Json colorJson(const std::optional<platform::UIColor>& color); // "#RRGGBBAA" or null
Json textJson(const std::optional<std::string>& text);
// A value read by name; null for one that is not set. Pictures, views and records are passed over.
Json valueJson(const platform::KeyValue& value);

// Indented, with a newline at the end. Damaged UTF-8 becomes U+FFFD.
std::string documentText(const Json& json);

} // namespace quorvel::headless
