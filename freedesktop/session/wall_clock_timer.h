// An instant of the system's clock, awaited without looking at it in between.
#pragma once

#include <functional>

#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/session/descriptor_events.h"
#include "platform/ns_date.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

// On the default main context of the thread that makes it; the calls do not end it. An instant that
// passes while the system sleeps comes when it wakes.
class WallClockTimer {
public:
    // `clockWasSet`: the clock jumped, or the system woke; told only while an instant is awaited,
    // and the instant is awaited no longer. The log is told where the system has no timer to give.
    WallClockTimer(platform::SystemLog& log, std::function<void()> instantCame,
                   std::function<void()> clockWasSet);
    WallClockTimer(const WallClockTimer&) = delete;
    WallClockTimer& operator=(const WallClockTimer&) = delete;

    // Instead of the instant before. One that is past comes at once. Never called early: the clock
    // reads the instant or later.
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
