// The home-screen shell's two classes that bring an installed application to the front.
#pragma once

#include <memory>
#include <string_view>

namespace quorvel::platform {

// The shell's record of an installed application. Its content is private to the shell.
class SBApplication {
public:
    virtual ~SBApplication() = default;
};

class SBApplicationController {
public:
    virtual ~SBApplicationController() = default;
    // Null where no such application is installed.
    virtual std::shared_ptr<SBApplication>
    applicationWithDisplayIdentifier(std::string_view identifier) = 0;
};

class SBUIController {
public:
    virtual ~SBUIController() = default;
    // Returns at once. Null brings nothing to the front.
    virtual void activateApplicationAnimated(const std::shared_ptr<SBApplication>& application) = 0;
};

// A host may lack either class, so the widget asks for them each time it needs them. The host owns
// both.
class HomeScreenShell {
public:
    virtual ~HomeScreenShell() = default;
    virtual SBApplicationController* applicationController() = 0; // may be null
    virtual SBUIController* uiController() = 0;                   // may be null
};

} // namespace quorvel::platform
