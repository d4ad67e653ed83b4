#include "freedesktop/calendars/store/calendar_service.h"

#include <algorithm>
#include <utility>

#include "freedesktop/calendars/thunderbird/profiles.h"

namespace quorvel::freedesktop::calendars {

CalendarService::CalendarService(std::shared_ptr<const TimeZone> userZone,
                                 CalendarProblemHandler onProblem)
    : m_userZone(std::move(userZone))
    , m_problems(std::move(onProblem)) {
    m_queue.setTimeZone(m_userZone);
}

CalendarService::~CalendarService() {
    if (m_worker.joinable()) {
        m_queue.close();
        m_reader.cancel();
        m_worker.join();
    }
}

void CalendarService::setSources(std::vector<CalendarSource> sources) {
    m_paths.clear();
    for (const CalendarSource& source : sources) {
        if (!source.text && !thunderbird::isThunderbird(source)) {
            m_paths.push_back(source.name);
        }
    }
    m_newSources = std::move(sources);
    m_answers.setSnapshot(nullptr);
    m_begun = std::nullopt;
}

void CalendarService::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    m_userZone = std::move(userZone);
    m_queue.setTimeZone(m_userZone);
}

void CalendarService::setIndex(std::unique_ptr<CalendarIndex> index) {
    m_reader.setIndex(std::move(index));
}

void CalendarService::setFileClock(std::function<std::int64_t()> clock) {
    m_reader.setFileClock(std::move(clock));
}

void CalendarService::setWaits(CalendarWaits waits) {
    m_waits = waits;
}

void CalendarService::setChangedHandler(std::function<void()> onChanged) {
    m_queue.setLateAnswerHandler(std::move(onChanged));
}

bool CalendarService::isAnyReadable() const {
    const auto snapshot = m_answers.snapshot();
    return snapshot ? snapshot->isAnyReadable : m_worker.joinable();
}

bool CalendarService::isAnyCalendar() const {
    const auto snapshot = m_answers.snapshot();
    return snapshot ? snapshot->isAnyCalendar : m_worker.joinable();
}

std::vector<CalendarProblem> CalendarService::unreadable() const {
    std::vector<CalendarProblem> unreadable;
    if (const auto snapshot = m_answers.snapshot()) {
        for (const VersionedProblem& problem : snapshot->problems) {
            if (problem.isUnreadable) {
                unreadable.push_back(problem.problem);
            }
        }
    }
    return unreadable;
}

std::string CalendarService::storeOf(std::string_view identifier) const {
    const auto snapshot = m_answers.snapshot();
    const std::size_t count =
        snapshot ? std::min(snapshot->calendars.size(), snapshot->stores.size()) : 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (snapshot->calendars[i]->calendarIdentifier == identifier) {
            return snapshot->stores[i];
        }
    }
    return {};
}

std::vector<std::string> CalendarService::deselectedCalendars() const {
    const auto snapshot = m_answers.snapshot();
    return snapshot ? snapshot->deselected : std::vector<std::string>();
}

// ---- for stores

void CalendarService::beginReading() {
    if (m_waits && !m_begun) {
        m_begun = m_queue.askForRefresh(std::exchange(m_newSources, std::nullopt));
        startWorker();
    }
}

CalendarService::View CalendarService::refresh() {
    auto newSources = std::exchange(m_newSources, std::nullopt);
    if (!m_waits) {
        return {readSnapshot(std::move(newSources)), m_userZone, Clock::time_point::max()};
    }
    const Clock::time_point deadline = nextDeadline();
    const auto begun = std::exchange(m_begun, std::nullopt);
    const auto ticket = begun ? *begun : m_queue.askForRefresh(std::move(newSources));
    startWorker();
    m_isLate = !m_queue.wait(ticket, deadline);
    auto snapshot = m_answers.snapshot();
    if (!snapshot) {
        snapshot = std::make_shared<const StoreSnapshot>();
    }
    return {std::move(snapshot), m_userZone, deadline};
}

std::shared_ptr<const SearchResult> CalendarService::search(const View& view,
                                                            const SearchRequest& request) {
    if (auto known = m_answers.resultFor(request)) {
        return known;
    }
    if (!m_waits) {
        return readEvents(request);
    }
    if (request.calendars.empty()) {
        m_queue.expectSearch(request);
        return nullptr;
    }
    const auto ticket = m_queue.askForSearch(request);
    startWorker();
    m_isLate = !m_queue.wait(ticket, view.deadline) || m_isLate;
    // An older result is shown until the new one has come.
    return m_answers.resultInWindow(request.window);
}

CalendarService::Clock::time_point CalendarService::nextDeadline() {
    const bool isFirst = !std::exchange(m_hasWaited, true);
    const std::chrono::duration<double> wait(isFirst ? m_waits->first : m_waits->later);
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(wait);
}

// ---- for the thread that owns the reader

std::shared_ptr<const StoreSnapshot>
CalendarService::readSnapshot(std::optional<std::vector<CalendarSource>> newSources) {
    if (newSources) {
        m_reader.setSources(*std::move(newSources));
    }
    auto snapshot = m_reader.refresh();
    if (!m_reader.isCancelled()) {
        m_problems.reportAll(snapshot->problems);
    }
    m_answers.setSnapshot(snapshot);
    return snapshot;
}

std::shared_ptr<const SearchResult> CalendarService::readEvents(const SearchRequest& request) {
    auto result = m_reader.search(request);
    m_problems.report(result->problems);
    m_answers.setResult(request, result);
    return result;
}

void CalendarService::startWorker() {
    if (!m_worker.joinable()) {
        m_worker = std::thread([this] { work(); });
    }
}

void CalendarService::work() {
    while (auto batch = m_queue.take()) {
        answer(*batch);
        if (const auto onLateAnswer = m_queue.finish(*batch)) {
            onLateAnswer();
        }
        m_reader.prepareForNextRequest();
    }
}

void CalendarService::answer(RequestQueue::Batch& batch) {
    auto search = std::move(batch.search);
    if (batch.isRefreshed) {
        const auto snapshot = readSnapshot(std::move(batch.sources));
        if (!search) {
            search = m_queue.expectedSearch(snapshot);
        }
    }
    if (search && !m_answers.resultFor(*search)) {
        readEvents(*search);
    }
}

} // namespace quorvel::freedesktop::calendars
