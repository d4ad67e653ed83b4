// The desktop's other applications: links go to the handler of their scheme, an application comes
// to the front by the identifier of its desktop entry.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/home_screen_shell.h"
#include "platform/system_log.h"
#include "platform/ui_application.h"

namespace quorvel::freedesktop {

// Nothing waits: what fails later is told to the log, and so is an application that does not answer
// in time. Replies arrive while the default main context runs. For one thread.
class DesktopLauncher final : public platform::UIApplication,
                              public platform::HomeScreenShell,
                              private platform::SBApplicationController,
                              private platform::SBUIController {
public:
    static constexpr double usualPatience = 20; // seconds

    // The log outlives the launcher. `patience`: seconds that an application has for its answer.
    explicit DesktopLauncher(platform::SystemLog& log, double patience = usualPatience);
    // What is still under way is abandoned; nothing is started or logged afterwards.
    ~DesktopLauncher() override;
    DesktopLauncher(const DesktopLauncher&) = delete;
    DesktopLauncher& operator=(const DesktopLauncher&) = delete;

    // Only the widget's own two schemes are opened, and only links short enough to be an argument.
    void openURL(const platform::NSURL& url) override;
    platform::SBApplicationController* applicationController() override { return this; }
    platform::SBUIController* uiController() override { return this; }

    // Runs the default main context until every launch has succeeded or failed, or the time is
    // over. True: none is left. What is no time (negative, not a number) is none at all.
    bool waitForLaunches(double seconds);

private:
    // "org.example.App" and "org.example.App.desktop" alike.
    std::shared_ptr<platform::SBApplication>
    applicationWithDisplayIdentifier(std::string_view identifier) override;
    void activateApplicationAnimated(
        const std::shared_ptr<platform::SBApplication>& application) override;

    class Launches;
    platform::SystemLog& m_log;
    std::unique_ptr<Launches> m_launches;
};

} // namespace quorvel::freedesktop
