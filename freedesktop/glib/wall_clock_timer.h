// Calls a function from the main loop at an instant of the system's clock.
#pragma once

#include <functional>

#include "freedesktop/glib/descriptor_events.h"
#include "freedesktop/io/file_descriptor.h"
#include "platform/ns_date.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

// Belongs to the thread that constructs it and calls on that thread's default main context. The
// calls must not destroy it. For an instant while the system sleeps it calls when the system wakes.
class WallClockTimer {
public:
    // `onClockSet`: someone set the clock or the system woke up while the timer was started; the
    // timer is stopped then. If the system has no timer left, logs that and never calls.
    WallClockTimer(platform::SystemLog& log, std::function<void()> onInstant,
                   std::function<void()> onClockSet);
    WallClockTimer(const WallClockTimer&) = delete;
    WallClockTimer& operator=(const WallClockTimer&) = delete;

    // Replaces the previous instant. Calls at once for a past instant, and never early: the clock
    // shows the instant or later.
    void start(platform::NSDate systemInstant);
    void stop();

private:
    void read();

    std::function<void()> m_onInstant;
    std::function<void()> m_onClockSet;
    FileDescriptor m_timer;
    DescriptorEvents m_events;
};

} // namespace quorvel::freedesktop
