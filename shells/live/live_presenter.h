// Presents a widget again whenever its rows may be out of date: the widget refreshes itself only
// when its host presents it.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/ns_date.h"
#include "shells/widget/row_descriptions.h"

namespace quorvel::freedesktop {
class FreedesktopPlatform;
struct HostTimeZone;
} // namespace quorvel::freedesktop

namespace quorvel::shells {

// Requests a presentation at local midnight, at the next start or end of a row, after the system
// resumes from sleep, when the time zone, the locale, the clock format or a settings file changes,
// and within a second of a change of the calendars. While it is not paused, copies of calendars on
// servers are fetched again when they are due, hourly. Changes that follow each other quickly cause
// one presentation. All calls come from the default main context of the thread, never from inside a
// method of this class.
class LivePresenter {
public:
    // Create it before the first presentation, so that no change is missed in between. The platform
    // outlives the presenter. `present` presents the widget and then calls restart(); it may
    // destroy the presenter.
    LivePresenter(freedesktop::FreedesktopPlatform& platform, std::function<void()> present);
    // For tests: replaces the file that defines the machine's time zone.
    LivePresenter(freedesktop::FreedesktopPlatform& platform, std::function<void()> present,
                  freedesktop::HostTimeZone hostTimeZone);
    // `present` is not called afterwards.
    ~LivePresenter();
    LivePresenter(const LivePresenter&) = delete;
    LivePresenter& operator=(const LivePresenter&) = delete;

    // Call this after each presentation, with the rows that it shows: drops pending presentations
    // and waits for the next one.
    void restart(const std::vector<RowDescription>& rows);
    // While paused (a finger is on a row) nothing is presented. A presentation that became due in
    // the meantime follows at once.
    void setPaused(bool isPaused);
    // Has the copies of calendars on servers fetched at once, also those that are not due, but none
    // more often than once a minute. Nothing waits for them: they are presented when they arrive.
    void fetchCalendars();

private:
    class Schedule;
    std::unique_ptr<Schedule> m_schedule;
};

} // namespace quorvel::shells
