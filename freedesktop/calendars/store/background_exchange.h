// The requests of stores to the background thread, and its results for them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "freedesktop/calendars/store/background_results.h"
#include "freedesktop/dates/time_zone.h"

namespace quorvel::freedesktop::calendars {

// For several threads: a mutex guards everything. Nothing but wait() and take() blocks.
class BackgroundExchange {
public:
    using Clock = std::chrono::steady_clock;
    using Ticket = std::uint64_t;

    // All that was requested since the last one.
    struct Request {
        Ticket ticket = 0;
        std::shared_ptr<const TimeZone> userZone; // never null
        bool isOptional = false;
        std::optional<BackgroundSearch> search; // the latest; absent: none yet
    };

    explicit BackgroundExchange(std::shared_ptr<const TimeZone> userZone); // never null

    // ---- for the stores and their owner

    void setTimeZone(std::shared_ptr<const TimeZone> userZone); // never null
    std::shared_ptr<const TimeZone> timeZone() const;
    void setOptional(bool isOptional);
    void setChangedHandler(std::function<void()> onChanged);

    // For a new store: what the one before was given no longer matters.
    Ticket requestRefresh();
    Ticket requestSearch(BackgroundSearch search);
    // Returns at the deadline at the latest.
    void wait(Ticket ticket, Clock::time_point deadline);
    // Null: there is none yet.
    std::shared_ptr<const BackgroundResult> latest() const;
    // The latest, which from now on is what the latest store was given.
    std::shared_ptr<const BackgroundResult> giveListing();
    std::shared_ptr<const BackgroundResult> giveEvents(const BackgroundSearch& search);

    // Wakes the background thread: its calendars have changed. Changes that follow each other
    // quickly are joined. Any thread may call it.
    void reportChange();
    // Ends all waits.
    void close();

    // ---- for the background thread

    // Waits for a request or a change. Absent: the exchange was closed.
    std::optional<Request> take();
    bool isClosed() const;
    void publish(Ticket ticket, std::shared_ptr<const BackgroundResult> result); // never null
    // Null: the first store, or another new one, is still to be given the latest result.
    std::shared_ptr<const GivenResults> given() const;
    std::function<void()> changedHandler() const; // null: none, or the exchange was closed

private:
    bool isRequested() const { return m_isClosed || m_finished != m_latestTicket; }

    mutable std::mutex m_mutex;
    std::condition_variable m_requested;
    std::condition_variable m_answered;
    std::shared_ptr<const TimeZone> m_userZone;
    bool m_isOptional = false;
    std::function<void()> m_onChanged;
    std::optional<BackgroundSearch> m_search;
    Ticket m_latestTicket = 0;      // given out
    Ticket m_finished = 0;          // this one and all before it
    bool m_isChanged = false;       // and not yet taken
    Clock::time_point m_nextChange; // when a change may be taken at the earliest
    std::shared_ptr<const BackgroundResult> m_result;
    std::shared_ptr<const GivenResults> m_given;
    bool m_isClosed = false;
};

} // namespace quorvel::freedesktop::calendars
