// Opens links and applications on the desktop: a link in the handler of its scheme, an application
// by the identifier of its desktop entry.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/result.h"
#include "freedesktop/launch/launch_context.h"
#include "platform/home_screen_shell.h"
#include "platform/system_log.h"
#include "platform/ui_application.h"

namespace quorvel::freedesktop {

// Describes a link or application that was not opened; only `what` is set.
using LaunchFailureHandler = std::function<void(const Error& failure)>;

// Does not wait. Logs what cannot be opened, also later: an application that does not answer in
// time, and a program that soon ends with an error. Replies arrive while the default main context
// runs.
class DesktopLauncher final : public platform::UIApplication,
                              public platform::HomeScreenShell,
                              private platform::SBApplicationController,
                              private platform::SBUIController {
public:
    static constexpr double usualPatience = 20; // seconds

    // The log must outlive the launcher. `patience`: seconds that an application has for its
    // answer.
    explicit DesktopLauncher(platform::SystemLog& log, double patience = usualPatience);
    // Abandons pending starts; nothing is started or logged afterwards.
    ~DesktopLauncher() override;
    DesktopLauncher(const DesktopLauncher&) = delete;
    DesktopLauncher& operator=(const DesktopLauncher&) = delete;

    // Not owned; it makes a token for each start from now on. Null: none.
    void setLaunchContext(LaunchContext* context);
    // The program that opens links instead of the handlers of their schemes. Empty: none.
    void setLinkProgram(std::string path);
    // Called with each failure in addition to its line in the log. Null: none.
    void setFailureHandler(LaunchFailureHandler onFailure);

    // Opens only links that checkLink() accepts.
    void openURL(const platform::NSURL& url) override;
    platform::SBApplicationController* applicationController() override { return this; }
    platform::SBUIController* uiController() override { return this; }

    // Runs the default main context until every launch has succeeded or failed, or the time is
    // over. True: no launch is pending. A negative number or NaN is no time.
    bool waitForLaunches(double seconds);

private:
    // "org.example.App" and "org.example.App.desktop" alike.
    std::shared_ptr<platform::SBApplication>
    applicationWithDisplayIdentifier(std::string_view identifier) override;
    void activateApplicationAnimated(
        const std::shared_ptr<platform::SBApplication>& application) override;

    class Launches;
    std::string m_linkProgram;
    std::shared_ptr<Launches> m_launches; // never null; processes have weak references
};

} // namespace quorvel::freedesktop
