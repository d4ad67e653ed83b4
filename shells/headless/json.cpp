#include "shells/headless/json.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
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

namespace {

constexpr char deleteCharacter = '\x7F';
constexpr char leadOfC1 = '\xC2'; // in UTF-8, before 0x80 to 0x9F

// JSON allows DEL and C1 unescaped, but a terminal acts upon them. They occur inside
// strings alone, where an escape means the same.
std::string withEscapedControls(const std::string& document) {
    std::string escaped;
    escaped.reserve(document.size());
    const auto escape = [&escaped](unsigned char code) {
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), "\\u%04x", code);
        escaped += text.data();
    };
    for (std::size_t index = 0; index < document.size(); ++index) {
        const auto next =
            static_cast<unsigned char>(index + 1 < document.size() ? document[index + 1] : '\0');
        if (document[index] == deleteCharacter) {
            escape(0x7F);
        } else if (document[index] == leadOfC1 && next >= 0x80 && next < 0xA0) {
            escape(next);
            ++index;
        } else {
            escaped += document[index];
        }
    }
    return escaped;
}

} // namespace

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
    return withEscapedControls(json.dump(2, ' ', false, Json::error_handler_t::replace)) + '\n';
}

} // namespace quorvel::headless
