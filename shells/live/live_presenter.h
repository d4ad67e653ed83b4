// When a live host presents its widget again: the widget refreshes only then, so everything that
// makes its rows out of date ends here.
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

// Asks for a presentation at local midnight, at the next start or end of a row, after resume, when
// the zone, the locale or the clock format changes, when a file of settings changes, and when the
// calendars change, within a second of it. Bursts are joined. Everything happens on the thread's
// default main context, never from within a call of the host's.
class LivePresenter {
public:
    // Made before the first presentation, so that no change falls in between. The platform outlives
    // the presenter. `present` is to present the widget, and so to call presented(); it may end the
    // presenter.
    LivePresenter(freedesktop::FreedesktopPlatform& platform, std::function<void()> present);
    // With another place for the machine's time zone than the usual one.
    LivePresenter(freedesktop::FreedesktopPlatform& platform, std::function<void()> present,
                  freedesktop::HostTimeZone hostTimeZone);
    // Nothing is called afterwards.
    ~LivePresenter();
    LivePresenter(const LivePresenter&) = delete;
    LivePresenter& operator=(const LivePresenter&) = delete;

    // The widget has been presented, whoever asked for it, and shows these rows.
    void presented(const std::vector<RowDescription>& rows);
    // While held back (a finger is on a row) nothing is presented; what came due meanwhile is due
    // at once afterwards.
    void setHeldBack(bool heldBack);

private:
    class Schedule;
    std::unique_ptr<Schedule> m_schedule;
};

} // namespace quorvel::shells
