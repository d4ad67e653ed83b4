// Has the copies of calendars on servers fetched again when they are due, while a widget lives.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "freedesktop/glib/child_program.h"
#include "freedesktop/glib/delayed_call.h"

namespace quorvel::freedesktop {
class FreedesktopPlatform;
} // namespace quorvel::freedesktop

namespace quorvel::shells {

// Runs on the default main context of the thread that constructs it. Without such calendars it does
// nothing. Who watches the copies notices what was fetched. Logs once that the program that fetches
// them cannot be started.
class SubscriptionRefresh {
public:
    explicit SubscriptionRefresh(freedesktop::FreedesktopPlatform& platform); // outlives it
    SubscriptionRefresh(const SubscriptionRefresh&) = delete;
    SubscriptionRefresh& operator=(const SubscriptionRefresh&) = delete;

    // Call it after each presentation, as other calendars may be due then.
    void restart();
    void setPaused(bool isPaused); // nothing is started while paused
    // Has all fetched at once that were not asked for within the last minute, as the user wants it.
    void fetchNow();

private:
    using SteadyClock = std::chrono::steady_clock;

    double secondsUntilAllowed(const std::string& input, std::int64_t interval) const;
    void startIfDue();
    void start(const freedesktop::ProgramCall& call);

    freedesktop::FreedesktopPlatform& m_platform;
    bool m_isPaused = false;
    bool m_hasFailed = false;
    std::unique_ptr<freedesktop::ChildProgram> m_program; // null: it is not running
    std::string m_lastInput;                              // of the program
    SteadyClock::time_point m_lastStart;
    freedesktop::DelayedCall m_timer;
};

} // namespace quorvel::shells
