// Starts a program without a shell and without waiting for it. Only for this folder.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/result.h"

namespace quorvel::freedesktop::launch {

struct ProcessStart {
    std::vector<std::string> arguments; // the first one is the program
    std::string folder;                 // empty: the folder of this process
    std::string activationToken;        // in the environment of the new process alone; empty: none
};

// Called while the default main context runs if the program ends with an error within the seconds
// of `soon`. By then it has most probably shown the user nothing.
using OnEndedSoon = std::function<void()>;
constexpr double soon = 15;

// `onEndedSoon` may be null. The end of the process is awaited on the default main context.
Result<void> startProcess(const ProcessStart& start, OnEndedSoon onEndedSoon);

} // namespace quorvel::freedesktop::launch
