// Opens links and applications on the desktop: a link in the handler of its scheme, an application
// by the identifier of its desktop entry.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/home_screen_shell.h"
#include "platform/system_log.h"
#include "platform/ui_application.h"

namespace quorvel::freedesktop {

// Does not wait. Logs a start that fails later and an application that does not answer in time.
// Replies arrive while the default main context runs.
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
    platform::SystemLog& m_log;
    std::unique_ptr<Launches> m_launches;
};

} // namespace quorvel::freedesktop
