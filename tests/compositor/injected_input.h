// Sends input to a compositor that runs with the preloaded devices of input_preload.c.
#pragma once

#include <string>

namespace quorvel::compositor {

// Throws std::runtime_error where no compositor listens at the socket.
void sendInput(const std::string& socket, const std::string& command);

} // namespace quorvel::compositor
