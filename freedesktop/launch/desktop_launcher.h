// Opens links and applications on the desktop: a link in the handler of its scheme, an application
// by the identifier of its desktop entry.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "freedesktop/launch/launch_context.h"
#include "freedesktop/launch/launcher.h"

namespace quorvel::freedesktop {

// Does not wait. Logs what cannot be opened, also later: an application that does not answer in
// time, and a program that soon ends with an error. Replies arrive while the default main context
// runs.
class DesktopLauncher final : public Launcher,
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

    void setLaunchContext(LaunchContext* context) override;
    void setLinkProgram(std::string path) override;
    void setFailureHandler(LaunchFailureHandler onFailure) override;
    bool waitForLaunches(double seconds) override;

    // Opens only links that checkLink() accepts.
    void openURL(const platform::NSURL& url) override;
    platform::SBApplicationController* applicationController() override { return this; }
    platform::SBUIController* uiController() override { return this; }

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

// A LauncherFactory.
std::unique_ptr<Launcher> makeDesktopLauncher(platform::SystemLog& log);

} // namespace quorvel::freedesktop
