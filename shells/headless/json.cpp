#include "shells/headless/json.h"

#include <cmath>
#include <cstdint>
#include <type_traits>
#include <variant>
#include <vector>

#include "shells/headless/color_text.h"

namespace quorvel::headless {

using platform::CGRect;
using platform::CGSize;
using platform::KeyValue;
using platform::NSDate;
using platform::NSURL;
using platform::UIColor;

Json numberJson(double number) {
    constexpr double largestExactWholeNumber = 9007199254740992.0; // 2 to the power of 53
    if (!std::isfinite(number)) {
        return nullptr;
    }
    if (std::abs(number) <= largestExactWholeNumber && std::trunc(number) == number) {
        return static_cast<std::int64_t>(number);
    }
    return number;
}

Json sizeJson(CGSize size) {
    return Json::array({numberJson(size.width), numberJson(size.height)});
}

Json rectJson(const CGRect& rect) {
    return Json::array({numberJson(rect.origin.x), numberJson(rect.origin.y),
                        numberJson(rect.size.width), numberJson(rect.size.height)});
}

Json colorJson(const std::optional<UIColor>& color) {
    return color ? Json(colorText(*color)) : Json(nullptr);
}

Json textJson(const std::optional<std::string>& text) {
    return text ? Json(*text) : Json(nullptr);
}

Json valueJson(const KeyValue& value) {
    return std::visit(
        [](const auto& held) -> Json {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, platform::CGFloat>) {
                return numberJson(held);
            } else if constexpr (std::is_same_v<Held, NSDate>) {
                return numberJson(held.timeIntervalSinceReferenceDate);
            } else if constexpr (std::is_same_v<Held, NSURL>) {
                return held.absoluteString();
            } else if constexpr (std::is_same_v<Held, UIColor>) {
                return colorText(held);
            } else if constexpr (std::is_same_v<Held, bool> || std::is_same_v<Held, std::int64_t> ||
                                 std::is_same_v<Held, std::string> ||
                                 std::is_same_v<Held, std::vector<std::string>>) {
                return held;
            } else {
                return nullptr;
            }
        },
        value);
}

std::string documentText(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace quorvel::headless
