#include "freedesktop/calendars/store/request_queue.h"

#include <algorithm>
#include <utility>

namespace quorvel::freedesktop::calendars {

RequestQueue::Ticket
RequestQueue::askForRefresh(std::optional<std::vector<CalendarSource>> newSources) {
    const std::lock_guard lock(m_mutex);
    m_pending.isRefreshed = true;
    if (newSources) {
        m_pending.sources = std::move(newSources);
    }
    m_asked.notify_one();
    return ++m_latest;
}

RequestQueue::Ticket RequestQueue::askForSearch(const SearchRequest& request) {
    const std::lock_guard lock(m_mutex);
    m_pending.search = m_latestSearch = request;
    m_asked.notify_one();
    return ++m_latest;
}

void RequestQueue::expectSearch(const SearchRequest& request) {
    const std::lock_guard lock(m_mutex);
    m_latestSearch = request;
}

void RequestQueue::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    const std::lock_guard lock(m_mutex);
    m_userZone = std::move(userZone);
}

bool RequestQueue::wait(Ticket ticket, Clock::time_point deadline) {
    std::unique_lock lock(m_mutex);
    const bool isAnswered =
        m_answered.wait_until(lock, deadline, [&] { return m_finished >= ticket; });
    m_isAnswerLate = m_isAnswerLate || !isAnswered;
    return isAnswered;
}

void RequestQueue::setLateAnswerHandler(std::function<void()> onLateAnswer) {
    const std::lock_guard lock(m_mutex);
    m_onLateAnswer = std::move(onLateAnswer);
}

void RequestQueue::close() {
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_asked.notify_one();
}

std::optional<RequestQueue::Batch> RequestQueue::take() {
    std::unique_lock lock(m_mutex);
    m_asked.wait(lock, [this] { return m_isClosed || m_finished != m_latest; });
    if (m_isClosed) {
        return std::nullopt;
    }
    Batch batch = std::exchange(m_pending, {});
    batch.ticket = m_latest;
    return batch;
}

std::optional<SearchRequest>
RequestQueue::expectedSearch(const std::shared_ptr<const StoreSnapshot>& snapshot) const {
    const std::lock_guard lock(m_mutex);
    if (!m_latestSearch) {
        return std::nullopt;
    }
    SearchRequest request{snapshot, m_userZone, m_latestSearch->window, m_latestSearch->narrow, {}};
    // A store that had no calendars yet would have asked for all of them.
    const bool areAllWanted = m_latestSearch->snapshot->calendars.empty();
    const platform::EKCalendars& wanted = m_latestSearch->calendars;
    for (const auto& calendar : snapshot->calendars) {
        const bool isWanted = std::any_of(wanted.begin(), wanted.end(), [&](const auto& one) {
            return one->calendarIdentifier == calendar->calendarIdentifier;
        });
        if (isWanted || areAllWanted) {
            request.calendars.push_back(calendar);
        }
    }
    return request;
}

std::function<void()> RequestQueue::finish(const Batch& batch) {
    const std::lock_guard lock(m_mutex);
    m_finished = batch.ticket;
    m_answered.notify_all();
    return std::exchange(m_isAnswerLate, false) ? m_onLateAnswer : nullptr;
}

} // namespace quorvel::freedesktop::calendars
