// Answers for the names of hosts, in place of the machine's.
#pragma once

#include <deque>
#include <string>

namespace quorvel::testing_network {

// The process has at most one. A name without an answer has no address.
class FakeResolver {
public:
    FakeResolver();
    ~FakeResolver(); // the machine's answers count again
    FakeResolver(const FakeResolver&) = delete;
    FakeResolver& operator=(const FakeResolver&) = delete;

    // Each question gets the next answer; the last one is repeated.
    void setAnswers(const std::string& name, std::deque<std::string> addresses);
};

} // namespace quorvel::testing_network
