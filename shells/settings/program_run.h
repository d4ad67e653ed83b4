// Runs a program in the background and collects what it writes.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::settings_pages {

struct ProgramResult {
    bool hasSucceeded = false; // it ended with the exit status 0
    std::string output;
    std::string errors;
};

// Starts the program without a shell. Belongs to one thread and calls on its default main context.
class ProgramRun {
public:
    // `onEnd` is called once, also where the program cannot be started, in which case the errors
    // say why. A program that takes longer than the seconds is killed. The call may destroy the
    // run. `input`: what the program finds on its standard input; empty: that of this process.
    ProgramRun(const std::vector<std::string>& arguments, double seconds,
               std::function<void(const ProgramResult&)> onEnd, const std::string& input = {});
    ~ProgramRun(); // kills the program; the function is not called afterwards
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;

private:
    struct State;
    std::shared_ptr<State> m_state; // never null
};

} // namespace quorvel::settings_pages
