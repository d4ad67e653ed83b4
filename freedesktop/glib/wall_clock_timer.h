// Waits for an instant of the system's clock without waking up before it.
#pragma once

#include <functional>

#include "freedesktop/glib/descriptor_events.h"
#include "freedesktop/io/file_descriptor.h"
#include "platform/ns_date.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

// Belongs to the thread that makes it, and calls on that thread's default main context; the calls
// do not destroy it. An instant that passes while the system sleeps is reported when it wakes.
class WallClockTimer {
public:
    // `clockWasSet`: the clock jumped or the system woke up while an instant was awaited, which is
    // no longer awaited then. Logs when the system has no timer left; then nothing is called.
    WallClockTimer(platform::SystemLog& log, std::function<void()> instantCame,
                   std::function<void()> clockWasSet);
    WallClockTimer(const WallClockTimer&) = delete;
    WallClockTimer& operator=(const WallClockTimer&) = delete;

    // Replaces the instant before. A past instant is reported at once, none is reported early: the
    // clock shows the instant or later.
    void await(platform::NSDate systemInstant);
    void stop();

private:
    void read();

    std::function<void()> m_instantCame;
    std::function<void()> m_clockWasSet;
    FileDescriptor m_timer;
    DescriptorEvents m_events;
};

} // namespace quorvel::freedesktop
