// The log of the agenda in the shell's process.
#pragma once

#include <string_view>

#include "platform/system_log.h"

namespace quorvel::phosh {

// Passes each message on to the shell's own log, as syslog's settings belong to the whole process.
// For any thread: it has no state.
class ShellLog final : public platform::SystemLog {
public:
    void log(std::string_view message) override;
};

} // namespace quorvel::phosh
