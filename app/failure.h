// Why a command ends early, and the exit status that follows from it.
#pragma once

#include "base/result.h"

namespace quorvel::app {

struct Failure {
    Error error;
    int exitStatus = 0;
};

template <class Value>
using CommandResult = Result<Value, Failure>;

// The command line asks for something that does not exist or is not allowed: status 2.
Failure usageFailure(Error error);
// Something could not be read, written or started: status 1.
Failure operationFailure(Error error);

} // namespace quorvel::app
