#include "platform/ns_url.h"

#include <algorithm>

#include "base/ascii_text.h"

namespace quorvel::platform {

namespace {

bool mayStandAnywhere(char c) {
    constexpr std::string_view marks = "!$&'()*+,-./:;=?@_~[]";
    return isAsciiLetterOrDigit(c) || marks.find(c) != std::string_view::npos;
}

bool startsEscape(std::string_view text) {
    return text.size() >= 3 && text[0] == '%' && hexDigitValue(text[1]) && hexDigitValue(text[2]);
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
