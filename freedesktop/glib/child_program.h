// Starts a program of ours without a shell, gives it its input, and notices when it ends.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/result.h"

namespace quorvel::freedesktop {

struct ProgramCall {
    std::vector<std::string> arguments; // the first one is the program's path
    std::string input;                  // what it reads from standard input
    bool showsErrors = true;            // false: standard error is dropped. Its output always is.
};

// Belongs to the thread that starts the program.
class ChildProgram {
public:
    // Called once on the thread's default main context, unless the object is destroyed before.
    // The status is negative if a signal ended the program. May destroy the object.
    using OnEnded = std::function<void(int status)>;

    // The `what` of the error is the system's message. `onEnded` may be null.
    static Result<std::unique_ptr<ChildProgram>> start(const ProgramCall& call, OnEnded onEnded);
    ~ChildProgram(); // the program runs on
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    // Runs the default main context until the program ends. False: the time was over first.
    bool wait(double seconds);

private:
    struct Running;
    explicit ChildProgram(std::shared_ptr<Running> running);
    std::shared_ptr<Running> m_running;
};

} // namespace quorvel::freedesktop
