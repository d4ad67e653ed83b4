// A link, checked once when it is made and never parsed again.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorvel::platform {

class NSURL {
public:
    // Nothing where the text holds a character that a link may not have: only ASCII letters,
    // digits, !$&'()*+,-./:;=?@_~[], at most one '#', and '%' before two hexadecimal digits.
    // The empty text is a link.
    static std::optional<NSURL> URLWithString(std::string_view text);

    const std::string& absoluteString() const { return m_absoluteString; }
    bool operator==(const NSURL&) const = default;

private:
    explicit NSURL(std::string_view text)
        : m_absoluteString(text) {}

    std::string m_absoluteString;
};

} // namespace quorvel::platform
