// The handler of the links, run as the desktop runs it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/freedesktop/launch/launch_fixture.h"

namespace quorvel::freedesktop {

struct Outcome {
    int status = 0; // of the process; -1 where it had to be ended
    std::string output;
    std::string errors;
    double seconds = 0; // that it took
};

constexpr const char* eventLink = "x-apple-calevent://office/42?o=415907100.0"; // 2014-03-07 17:45
constexpr const char* dayLink = "fantastical2://show?date=2014-3-7";

class QuorvelOpenTest : public LaunchTest {
protected:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    // Services of the test answer meanwhile.
    static Outcome quorvelOpen(const std::vector<std::string>& arguments,
                               const Environment& environment = {});
};

} // namespace quorvel::freedesktop
