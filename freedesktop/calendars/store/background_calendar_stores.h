// Stores that never let their caller wait longer than it chose: a background thread waits for the
// server, expands its events, and reports what is new.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "freedesktop/calendars/store/live_calendar_stores.h"
#include "freedesktop/dates/time_zone.h"
#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

namespace calendars {
class BackgroundExchange;
} // namespace calendars

// A store has the latest calendars that the background thread has found, and of its latest events
// those that match the predicate. Each new store, and each question for events, lets that thread
// ask the inner stores again. Before its first answer there are no calendars.
//
// One thread at a time uses this class and its stores. The background thread owns the inner stores;
// the two share what a mutex guards, and immutable results.
class BackgroundCalendarStores final : public LiveCalendarStores {
public:
    // Called on the background thread, which owns the result; never returns null.
    using MakeStores = std::function<std::unique_ptr<LiveCalendarStores>()>;

    // The inner stores are made at once. `onProblem` is called on the background thread where they
    // throw, else on the caller's where there is no such thread. Nothing of these is null. `waits`
    // bound the caller's waiting; the inner stores' own waits are the background thread's.
    BackgroundCalendarStores(MakeStores makeStores, std::shared_ptr<const TimeZone> userZone,
                             const std::function<void(const std::string& what)>& onProblem,
                             DataServerWaits waits);
    // Waits for the current call of the inner stores, which may take as long as they wait for their
    // server, and for their end; no further call is begun. Any thread may destroy it.
    ~BackgroundCalendarStores() override;
    BackgroundCalendarStores(const BackgroundCalendarStores&) = delete;
    BackgroundCalendarStores& operator=(const BackgroundCalendarStores&) = delete;

    // These reach the inner stores with the next store or change.
    void setOptional(bool isOptional) override;
    void setTimeZone(std::shared_ptr<const TimeZone> userZone) override;
    // Called on the background thread when it has found calendars or events whose values differ
    // from those that the latest store had and returned.
    void setChangedHandler(std::function<void()> onChanged) override;

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

    // About the latest calendars that were found. True before the first: it is not known yet.
    bool anyReadable() const override;
    bool hasCalendar(std::string_view identifier) const override;
    std::vector<std::string> deselectedCalendars() const override;
    std::vector<CalendarProblem> unreadable() const override;
    bool isLate() const override; // true before the first events

private:
    class Store;

    std::shared_ptr<calendars::BackgroundExchange> m_exchange;
    DataServerWaits m_waits;
    bool m_isFirst = true;
    std::thread m_worker;
};

} // namespace quorvel::freedesktop
