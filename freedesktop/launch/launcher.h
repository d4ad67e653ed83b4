// What opens links and applications for a host, without a type of the library that does it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/result.h"
#include "platform/home_screen_shell.h"
#include "platform/system_log.h"
#include "platform/ui_application.h"

namespace quorvel::freedesktop {

class LaunchContext;

// Describes a link or application that was not opened; only `what` is set.
using LaunchFailureHandler = std::function<void(const Error& failure)>;

class Launcher : public platform::UIApplication, public platform::HomeScreenShell {
public:
    // Not owned; it makes a token for each start from now on. Null: none.
    virtual void setLaunchContext(LaunchContext* context) = 0;
    // The program that opens links instead of the handlers of their schemes. Empty: none.
    virtual void setLinkProgram(std::string path) = 0;
    // Called with each failure in addition to its line in the log. Null: none.
    virtual void setFailureHandler(LaunchFailureHandler onFailure) = 0;
    // Runs the default main context until every launch has succeeded or failed, or the time is
    // over. True: no launch is pending. A negative number or NaN is no time.
    virtual bool waitForLaunches(double seconds) = 0;
};

// Never returns null. The log must outlive the result.
using LauncherFactory = std::function<std::unique_ptr<Launcher>(platform::SystemLog& log)>;

} // namespace quorvel::freedesktop
