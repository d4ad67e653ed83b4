// What the program quorvel-refresh is asked to do. Addresses and passwords come on standard input,
// because other users can read the arguments of a process.
#pragma once

#include <string>
#include <vector>

#include "app/refresh/calendar_refresh.h"
#include "base/result.h"

namespace quorvel::app {

enum class RefreshTask { refresh, storePassword, forgetPassword, help, version };

struct RefreshInput {
    RefreshTask task = RefreshTask::refresh;
    RefreshOptions options;
};

// An error is wrong usage.
Result<RefreshInput> parseRefreshArguments(const std::vector<std::string>& arguments);
std::string refreshHelp();

// The lines of standard input, without empty ones at the end. An error if there is too much.
Result<std::vector<std::string>> readInputLines();

} // namespace quorvel::app
