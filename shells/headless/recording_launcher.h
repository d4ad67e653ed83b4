// Records links and applications instead of opening and activating them.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/home_screen_shell.h"
#include "platform/ui_application.h"

namespace quorvel::headless {

// Reports every application as installed, so that each one that the widget activates is recorded.
class RecordingLauncher : public platform::UIApplication,
                          public platform::HomeScreenShell,
                          private platform::SBApplicationController,
                          private platform::SBUIController {
public:
    void openURL(const platform::NSURL& url) override { m_opened.push_back(url.absoluteString()); }
    platform::SBApplicationController* applicationController() override { return this; }
    platform::SBUIController* uiController() override { return this; }

    // The links since the last call.
    std::vector<std::string> takeOpened() { return std::exchange(m_opened, {}); }
    // The identifiers of the applications activated since the last call.
    std::vector<std::string> takeActivated() { return std::exchange(m_activated, {}); }

private:
    struct Application : platform::SBApplication {
        explicit Application(std::string_view displayIdentifier)
            : identifier(displayIdentifier) {}
        std::string identifier;
    };

    std::shared_ptr<platform::SBApplication>
    applicationWithDisplayIdentifier(std::string_view identifier) override {
        return std::make_shared<Application>(identifier);
    }
    void activateApplicationAnimated(
        const std::shared_ptr<platform::SBApplication>& application) override {
        if (const auto* found = dynamic_cast<const Application*>(application.get())) {
            m_activated.push_back(found->identifier);
        }
    }

    std::vector<std::string> m_opened;
    std::vector<std::string> m_activated;
};

} // namespace quorvel::headless
