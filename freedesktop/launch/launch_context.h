// Lets the applications that are opened come to the front: the host's toolkit makes the tokens by
// which the desktop recognises that the user asked for it.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// Implemented by a host with a display.
class LaunchContext {
public:
    virtual ~LaunchContext() = default;
    // The token for one start of the application with that desktop entry,
    // "org.example.App.desktop"; empty where there is no entry. An empty token: none.
    virtual std::string makeToken(std::string_view entryName) = 0;
    // The application that the token was made for has not started.
    virtual void discardToken(const std::string& token) = 0;
};

} // namespace quorvel::freedesktop
