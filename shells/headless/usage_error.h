// What the user asked for in a way that cannot be done, in words for the user.
#pragma once

#include <stdexcept>

namespace quorvel::headless {

// The text reads "what is wrong: what to do".
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace quorvel::headless
