// The requests of stores to the thread that reads the calendars.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "freedesktop/calendars/files/calendar_source.h"
#include "freedesktop/calendars/store/store_snapshot.h"

namespace quorvel::freedesktop::calendars {

// For the threads that ask and the one that answers: a mutex guards everything. A refresh or a
// search that was not taken yet is replaced by a later one, which answers both.
class RequestQueue {
public:
    using Clock = std::chrono::steady_clock;
    using Ticket = std::uint64_t;

    // The requests that are answered together, the refresh first.
    struct Batch {
        bool isRefreshed = false;
        std::optional<std::vector<CalendarSource>> sources; // the new ones, if any
        std::optional<SearchRequest> search;
        Ticket ticket = 0; // of the latest request in it
    };

    // ---- for those who ask

    Ticket askForRefresh(std::optional<std::vector<CalendarSource>> newSources);
    Ticket askForSearch(const SearchRequest& request);
    // Nothing is searched for it now, but see expectedSearch().
    void expectSearch(const SearchRequest& request);
    void setTimeZone(std::shared_ptr<const TimeZone> userZone);
    // Returns at the deadline at the latest. False: the answer is late.
    bool wait(Ticket ticket, Clock::time_point deadline);
    // Called on the answering thread when a late answer has come. May be null.
    void setLateAnswerHandler(std::function<void()> onLateAnswer);
    void close();

    // ---- for the one who answers

    // Waits for requests. Absent: the queue was closed.
    std::optional<Batch> take();
    // What will probably be asked of the new snapshot, because the latest search asked it of the
    // one before. Absent: nothing was asked yet.
    std::optional<SearchRequest>
    expectedSearch(const std::shared_ptr<const StoreSnapshot>& snapshot) const;
    // The handler to call, if an answer in the batch is late; else null.
    std::function<void()> finish(const Batch& batch);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_asked;
    std::condition_variable m_answered;
    Batch m_pending;
    Ticket m_latest = 0;                         // given out
    Ticket m_finished = 0;                       // this one and all before it
    std::optional<SearchRequest> m_latestSearch; // answered or not
    std::shared_ptr<const TimeZone> m_userZone;
    std::function<void()> m_onLateAnswer;
    bool m_isAnswerLate = false;
    bool m_isClosed = false;
};

} // namespace quorvel::freedesktop::calendars
