#include "platform/ns_url.h"

#include <algorithm>

namespace quorvel::platform {

namespace {

// Without regard to the locale, as the standard library's own tests are not.
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool mayStandAnywhere(char c) {
    constexpr std::string_view marks = "!$&'()*+,-./:;=?@_~[]";
    return isLetter(c) || isDigit(c) || marks.find(c) != std::string_view::npos;
}

bool startsEscape(std::string_view text) {
    return text.size() >= 3 && text[0] == '%' && isHexDigit(text[1]) && isHexDigit(text[2]);
}

} // namespace

std::optional<NSURL> NSURL::URLWithString(std::string_view text) {
    if (std::count(text.begin(), text.end(), '#') > 1) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '#' || mayStandAnywhere(text[i]) || startsEscape(text.substr(i))) {
            continue;
        }
        return std::nullopt;
    }
    return NSURL(text);
}

} // namespace quorvel::platform
