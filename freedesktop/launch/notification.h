// A word to the user of a program that has no window.
#pragma once

#include <string>

namespace quorvel::freedesktop {

// A notification of the desktop's. Runs the default main context for a few seconds at most. False
// where nobody shows any.
bool notifyUser(const std::string& summary, const std::string& body);

// "no such thing: do that" as a sentence: "No such thing: do that."
std::string asSentence(const std::string& problem);

} // namespace quorvel::freedesktop
