#include "freedesktop/calendars/store/background_exchange.h"

#include <utility>

namespace quorvel::freedesktop::calendars {

namespace {

// A server that is filled reports each of its events.
constexpr std::chrono::milliseconds pauseBetweenChanges(500);

} // namespace

BackgroundExchange::BackgroundExchange(std::shared_ptr<const TimeZone> userZone)
    : m_userZone(std::move(userZone)) {}

void BackgroundExchange::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    const std::lock_guard lock(m_mutex);
    m_userZone = std::move(userZone);
}

std::shared_ptr<const TimeZone> BackgroundExchange::timeZone() const {
    const std::lock_guard lock(m_mutex);
    return m_userZone;
}

void BackgroundExchange::setOptional(bool isOptional) {
    const std::lock_guard lock(m_mutex);
    m_isOptional = isOptional;
}

void BackgroundExchange::setChangedHandler(std::function<void()> onChanged) {
    const std::lock_guard lock(m_mutex);
    m_onChanged = std::move(onChanged);
}

BackgroundExchange::Ticket BackgroundExchange::requestRefresh() {
    const std::lock_guard lock(m_mutex);
    m_given = nullptr;
    m_requested.notify_one();
    return ++m_latestTicket;
}

BackgroundExchange::Ticket BackgroundExchange::requestSearch(BackgroundSearch search) {
    const std::lock_guard lock(m_mutex);
    m_search = std::move(search);
    m_requested.notify_one();
    return ++m_latestTicket;
}

void BackgroundExchange::wait(Ticket ticket, Clock::time_point deadline) {
    std::unique_lock lock(m_mutex);
    m_answered.wait_until(lock, deadline, [&] { return m_isClosed || m_finished >= ticket; });
}

std::shared_ptr<const BackgroundResult> BackgroundExchange::latest() const {
    const std::lock_guard lock(m_mutex);
    return m_result;
}

std::shared_ptr<const BackgroundResult> BackgroundExchange::giveListing() {
    const std::lock_guard lock(m_mutex);
    m_given = std::make_shared<const GivenResults>(GivenResults{m_result, std::nullopt, nullptr});
    return m_result;
}

std::shared_ptr<const BackgroundResult>
BackgroundExchange::giveEvents(const BackgroundSearch& search) {
    const std::lock_guard lock(m_mutex);
    const auto listing = m_given ? m_given->listing : m_result;
    m_given = std::make_shared<const GivenResults>(GivenResults{listing, search, m_result});
    return m_result;
}

void BackgroundExchange::reportChange() {
    const std::lock_guard lock(m_mutex);
    m_isChanged = true;
    m_requested.notify_one();
}

void BackgroundExchange::close() {
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_requested.notify_one();
    m_answered.notify_all();
}

std::optional<BackgroundExchange::Request> BackgroundExchange::take() {
    std::unique_lock lock(m_mutex);
    while (!isRequested()) {
        if (!m_isChanged) {
            m_requested.wait(lock);
        } else if (Clock::now() < m_nextChange) {
            m_requested.wait_until(lock, m_nextChange);
        } else {
            break;
        }
    }
    if (m_isClosed) {
        return std::nullopt;
    }
    if (std::exchange(m_isChanged, false)) {
        m_nextChange = Clock::now() + pauseBetweenChanges;
    }
    return Request{m_latestTicket, m_userZone, m_isOptional, m_search};
}

bool BackgroundExchange::isClosed() const {
    const std::lock_guard lock(m_mutex);
    return m_isClosed;
}

void BackgroundExchange::publish(Ticket ticket, std::shared_ptr<const BackgroundResult> result) {
    const std::lock_guard lock(m_mutex);
    m_result = std::move(result);
    m_finished = ticket;
    m_answered.notify_all();
}

std::shared_ptr<const GivenResults> BackgroundExchange::given() const {
    const std::lock_guard lock(m_mutex);
    return m_given;
}

std::function<void()> BackgroundExchange::changedHandler() const {
    const std::lock_guard lock(m_mutex);
    return m_isClosed ? nullptr : m_onChanged;
}

} // namespace quorvel::freedesktop::calendars
