// The activation token, by which the desktop recognises that the user asked for an application, as
// it travels from process to process.
#pragma once

#include <array>
#include <string>

namespace quorvel::freedesktop {

// The environment variables of a started program: of Wayland and of X11. Toolkits put the same
// token into both.
constexpr std::array<const char*, 2> activationTokenVariables = {"XDG_ACTIVATION_TOKEN",
                                                                 "DESKTOP_STARTUP_ID"};

// The token that this process was started with; empty: none. Removes both variables, because a
// token is for one start. Only while the process has one thread.
std::string takeOwnActivationToken();

// Whether the token may be passed on: not empty, of bounded length, UTF-8 without control
// characters.
bool isPassableToken(const std::string& token);

} // namespace quorvel::freedesktop
