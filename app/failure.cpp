#include "app/failure.h"

#include <utility>

namespace quorvel::app {

Failure usageFailure(Error error) {
    return {std::move(error), 2};
}

Failure operationFailure(Error error) {
    return {std::move(error), 1};
}

} // namespace quorvel::app
