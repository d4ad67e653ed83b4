// Starts another program, which ends with its object.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quorvel::window {

class ChildProcess {
public:
    // Standard error and output go to those files, standard input is empty. `inheritedDescriptor`
    // is open in the child as descriptor 3; negative: none.
    ChildProcess(const std::vector<std::string>& words,
                 const std::map<std::string, std::string>& environment,
                 const std::string& errorFile, int inheritedDescriptor = -1,
                 const std::string& outputFile = "/dev/null");
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t process() const { return m_process; }
    void end();
    // Waits for the end. The exit status, or minus the signal; absent where the process still runs.
    std::optional<int> exitStatus(double seconds);

private:
    pid_t m_process = 0;
    std::optional<int> m_status;
};

void rest(double seconds);
double secondsNow(); // of a steady clock

// Repeats the condition until it is true, at most for that time. Returns whether it became true.
template <class Condition>
bool becomesTrue(double seconds, Condition condition) {
    const double end = secondsNow() + seconds;
    while (!condition()) {
        if (secondsNow() > end) {
            return false;
        }
        rest(0.01);
    }
    return true;
}

} // namespace quorvel::window
