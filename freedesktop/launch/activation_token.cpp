#include "freedesktop/launch/activation_token.h"

#include <algorithm>
#include <cstdlib>

#include <glib.h>

namespace quorvel::freedesktop {

namespace {

constexpr std::size_t longestToken = 1024; // of bytes; those of the toolkits have about a hundred

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

} // namespace

std::string takeOwnActivationToken() {
    std::string token;
    for (const char* const name : activationTokenVariables) {
        const char* const value = std::getenv(name);
        if (token.empty() && value != nullptr && isPassableToken(value)) {
            token = value;
        }
        unsetenv(name);
    }
    return token;
}

bool isPassableToken(const std::string& token) {
    return !token.empty() && token.size() <= longestToken &&
           std::none_of(token.begin(), token.end(), isControl) &&
           g_utf8_validate_len(token.data(), token.size(), nullptr) != FALSE;
}

} // namespace quorvel::freedesktop
