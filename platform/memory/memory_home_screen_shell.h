// A home-screen shell with a settable list of installed applications.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/home_screen_shell.h"

namespace quorvel::platform::memory {

class MemoryHomeScreenShell : public HomeScreenShell,
                              private SBApplicationController,
                              private SBUIController {
public:
    bool hasApplicationController = true;
    bool hasUIController = true;
    std::set<std::string, std::less<>> installed;
    std::vector<std::string> lookedUp;  // in order
    std::vector<std::string> activated; // in order; "" for the activation of no application

    SBApplicationController* applicationController() override {
        return hasApplicationController ? this : nullptr;
    }
    SBUIController* uiController() override { return hasUIController ? this : nullptr; }

private:
    struct Application : SBApplication {
        explicit Application(std::string_view displayIdentifier)
            : identifier(displayIdentifier) {}
        std::string identifier;
    };

    std::shared_ptr<SBApplication>
    applicationWithDisplayIdentifier(std::string_view identifier) override {
        lookedUp.emplace_back(identifier);
        return installed.count(identifier) != 0 ? std::make_shared<Application>(identifier)
                                                : nullptr;
    }
    void activateApplicationAnimated(const std::shared_ptr<SBApplication>& application) override {
        const auto* known = static_cast<const Application*>(application.get());
        activated.push_back(known != nullptr ? known->identifier : "");
    }
};

} // namespace quorvel::platform::memory
