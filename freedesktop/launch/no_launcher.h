// The launcher of a host that opens nothing, such as one that records what it is asked for.
#pragma once

#include "freedesktop/launch/launcher.h"

namespace quorvel::freedesktop {

class NoLauncher final : public Launcher {
public:
    void setLaunchContext(LaunchContext*) override {}
    void setLinkProgram(std::string) override {}
    void setFailureHandler(LaunchFailureHandler) override {}
    bool waitForLaunches(double) override { return true; }

    void openURL(const platform::NSURL&) override {}
    platform::SBApplicationController* applicationController() override { return nullptr; }
    platform::SBUIController* uiController() override { return nullptr; }
};

} // namespace quorvel::freedesktop
