// Letters of ASCII, whatever the locale is.
#pragma once

#include <string>
#include <string_view>

namespace quorvel {

// A to Z as a to z. All other bytes stay as they are.
inline std::string asciiLowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return result;
}

} // namespace quorvel
