// Desktop notifications, for a program without a window.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// Does nothing if the desktop shows no notifications. Runs the default main context, for a few
// seconds at most.
void notifyUser(const std::string& summary, const std::string& body);

// "no such thing: do that" as a sentence: "No such thing: do that."
std::string asSentence(const std::string& problem);

} // namespace quorvel::freedesktop
