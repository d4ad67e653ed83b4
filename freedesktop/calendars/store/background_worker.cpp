#include "freedesktop/calendars/store/background_worker.h"

#include <exception>
#include <utility>

namespace quorvel::freedesktop::calendars {

BackgroundWorker::BackgroundWorker(std::shared_ptr<BackgroundExchange> exchange,
                                   MakeStores makeStores, ProblemHandler onProblem)
    : m_exchange(std::move(exchange))
    , m_makeStores(std::move(makeStores))
    , m_onProblem(std::move(onProblem)) {}

BackgroundWorker::~BackgroundWorker() = default;

void BackgroundWorker::run() {
    makeStores();
    while (const auto request = m_exchange->take()) {
        const Result result = answerOrReport(*request);
        own(result);
        m_exchange->publish(request->ticket, result);
        reportNews(*result);
    }
    m_stores.reset();
}

// The stores run in a process that must outlive their mistakes, such as a desktop's shell.
void BackgroundWorker::makeStores() {
    try {
        m_stores = m_makeStores();
        m_stores->setChangedHandler([exchange = m_exchange] { exchange->reportChange(); });
        m_userZone = nullptr;
    } catch (const std::exception& error) {
        m_stores.reset();
        m_onProblem(error.what());
    }
}

BackgroundWorker::Result
BackgroundWorker::answerOrReport(const BackgroundExchange::Request& request) {
    if (!m_stores) {
        makeStores();
    }
    try {
        if (m_stores) {
            return answer(request);
        }
    } catch (const std::exception& error) {
        m_onProblem(error.what());
    }
    return std::make_shared<const BackgroundResult>();
}

BackgroundWorker::Result BackgroundWorker::answer(const BackgroundExchange::Request& request) {
    applySettings(request);
    auto result = std::make_shared<BackgroundResult>();
    const auto store = m_stores->makeEventStore();
    result->calendars = store->calendars();
    if (request.search && !m_exchange->isClosed()) {
        result->search = request.search;
        result->events =
            store->eventsMatchingPredicate(predicateFor(*request.search, result->calendars));
        std::erase(result->events, nullptr);
    }
    result->deselected = m_stores->deselectedCalendars();
    result->isAnyReadable = m_stores->anyReadable();
    result->isLate = m_stores->isLate();
    result->unreadable = m_stores->unreadable();
    return result;
}

void BackgroundWorker::applySettings(const BackgroundExchange::Request& request) {
    m_stores->setOptional(request.isOptional);
    if (m_userZone != request.userZone) {
        m_userZone = request.userZone;
        m_stores->setTimeZone(m_userZone);
    }
}

void BackgroundWorker::own(const Result& result) {
    std::erase_if(m_results, [](const Result& one) { return one.use_count() == 1; });
    m_results.push_back(result);
}

// Compares again where a store was given something else during the comparison, perhaps this result.
void BackgroundWorker::reportNews(const BackgroundResult& result) const {
    auto given = m_exchange->given();
    while (given && differsFromGiven(result, *given)) {
        auto latest = m_exchange->given();
        if (latest == given) {
            if (const auto onChanged = m_exchange->changedHandler()) {
                onChanged();
            }
            return;
        }
        given = std::move(latest);
    }
}

} // namespace quorvel::freedesktop::calendars
