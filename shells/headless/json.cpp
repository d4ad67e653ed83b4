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

// JSON allows DEL and C1 controls without escapes, but a terminal acts upon them. They can only
// occur inside strings, where an escape has the same meaning.
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
        [](const auto& content) -> Json {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, platform::CGFloat>) {
                return numberJson(content);
            } else if constexpr (std::is_same_v<Content, NSDate>) {
                return numberJson(content.timeIntervalSinceReferenceDate);
            } else if constexpr (std::is_same_v<Content, NSURL>) {
                return content.absoluteString();
            } else if constexpr (std::is_same_v<Content, UIColor>) {
                return colorText(content);
            } else if constexpr (std::is_same_v<Content, bool> ||
                                 std::is_same_v<Content, std::int64_t> ||
                                 std::is_same_v<Content, std::string> ||
                                 std::is_same_v<Content, std::vector<std::string>>) {
                return content;
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
