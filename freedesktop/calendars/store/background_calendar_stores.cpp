#include "freedesktop/calendars/store/background_calendar_stores.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

#include "freedesktop/calendars/store/background_exchange.h"
#include "freedesktop/calendars/store/background_worker.h"

namespace quorvel::freedesktop {

using calendars::BackgroundExchange;
using calendars::BackgroundResult;
using calendars::BackgroundSearch;
using calendars::BackgroundWorker;
using platform::EKCalendars;
using platform::EKEventPredicate;
using platform::EKEvents;

namespace {

// Null where there is none.
std::shared_ptr<const platform::EKCalendar> calendarIn(const EKCalendars& calendars,
                                                       std::string_view identifier) {
    const auto found = std::find_if(calendars.begin(), calendars.end(), [&](const auto& calendar) {
        return calendar && calendar->calendarIdentifier == identifier;
    });
    return found != calendars.end() ? *found : nullptr;
}

} // namespace

class BackgroundCalendarStores::Store final : public platform::EKEventStore {
public:
    // The wait is that of all questions, in seconds.
    Store(std::shared_ptr<BackgroundExchange> exchange, double wait)
        : m_exchange(std::move(exchange))
        , m_left(wait) {
        waitFor(m_exchange->requestRefresh());
        if (const auto listing = m_exchange->giveListing()) {
            m_calendars = listing->calendars;
        }
    }

    EKCalendars calendars() override { return m_calendars; }

    std::shared_ptr<const platform::EKCalendar>
    calendarWithIdentifier(std::string_view id) override {
        return calendarIn(m_calendars, id);
    }

    EKEvents eventsMatchingPredicate(const EKEventPredicate& predicate) override {
        const BackgroundSearch search{predicate, m_exchange->timeZone(),
                                      calendars::namesAll(predicate, m_calendars)};
        waitFor(m_exchange->requestSearch(search));
        return calendars::eventsWithin(m_exchange->giveEvents(search).get(), search);
    }

private:
    using Clock = BackgroundExchange::Clock;
    using Seconds = std::chrono::duration<double>;

    void waitFor(BackgroundExchange::Ticket ticket) {
        if (m_left > Seconds(0)) {
            const Clock::time_point begin = Clock::now();
            m_exchange->wait(ticket, begin + std::chrono::duration_cast<Clock::duration>(m_left));
            m_left -= Clock::now() - begin;
        }
    }

    std::shared_ptr<BackgroundExchange> m_exchange;
    Seconds m_left;
    EKCalendars m_calendars;
};

BackgroundCalendarStores::BackgroundCalendarStores(
    MakeStores makeStores, std::shared_ptr<const TimeZone> userZone,
    const std::function<void(const std::string& what)>& onProblem, DataServerWaits waits)
    : m_exchange(std::make_shared<BackgroundExchange>(std::move(userZone)))
    , m_waits(waits) {
    try {
        m_worker =
            std::thread([exchange = m_exchange, makeStores = std::move(makeStores), onProblem] {
                BackgroundWorker(exchange, makeStores, onProblem).run();
            });
    } catch (const std::system_error& error) {
        m_exchange->close();
        m_exchange->publish(0, std::make_shared<const BackgroundResult>());
        onProblem(error.what());
    }
}

BackgroundCalendarStores::~BackgroundCalendarStores() {
    m_exchange->close();
    if (m_worker.joinable()) {
        m_worker.join();
    }
}

void BackgroundCalendarStores::setOptional(bool isOptional) {
    m_exchange->setOptional(isOptional);
}

void BackgroundCalendarStores::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    m_exchange->setTimeZone(std::move(userZone));
}

void BackgroundCalendarStores::setChangedHandler(std::function<void()> onChanged) {
    m_exchange->setChangedHandler(std::move(onChanged));
}

std::unique_ptr<platform::EKEventStore> BackgroundCalendarStores::makeEventStore() {
    const bool isFirst = std::exchange(m_isFirst, false);
    return std::make_unique<Store>(m_exchange, isFirst ? m_waits.first : m_waits.later);
}

bool BackgroundCalendarStores::anyReadable() const {
    const auto listing = m_exchange->latest();
    return !listing || listing->isAnyReadable;
}

bool BackgroundCalendarStores::hasCalendar(std::string_view identifier) const {
    const auto listing = m_exchange->latest();
    return listing && calendarIn(listing->calendars, identifier) != nullptr;
}

std::vector<std::string> BackgroundCalendarStores::deselectedCalendars() const {
    const auto listing = m_exchange->latest();
    return listing ? listing->deselected : std::vector<std::string>();
}

std::vector<CalendarProblem> BackgroundCalendarStores::unreadable() const {
    const auto listing = m_exchange->latest();
    return listing ? listing->unreadable : std::vector<CalendarProblem>();
}

bool BackgroundCalendarStores::isLate() const {
    return calendars::isLate(m_exchange->latest().get());
}

} // namespace quorvel::freedesktop
