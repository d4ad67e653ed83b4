// A process that is ended with its object, by its own number.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quorvel::window {

class ChildProcess {
public:
    // Standard error and output go to those files; nothing is read. `inheritedDescriptor`: stays
    // open in the child as 3.
    ChildProcess(const std::vector<std::string>& words,
                 const std::map<std::string, std::string>& environment,
                 const std::string& errorFile, int inheritedDescriptor = -1,
                 const std::string& outputFile = "/dev/null");
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t process() const { return m_process; }
    void end();
    // The exit status, or minus the signal; absent where it still runs after that time.
    std::optional<int> exitStatus(double seconds);

private:
    pid_t m_process = 0;
    std::optional<int> m_status;
};

// Asks again and again until the answer is yes, for that long at most.
template <class Question>
bool becomesTrue(double seconds, Question question);

void rest(double seconds);
double secondsNow(); // of a clock that never jumps

template <class Question>
bool becomesTrue(double seconds, Question question) {
    const double end = secondsNow() + seconds;
    while (!question()) {
        if (secondsNow() > end) {
            return false;
        }
        rest(0.01);
    }
    return true;
}

} // namespace quorvel::window
