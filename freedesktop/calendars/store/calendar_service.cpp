#include "freedesktop/calendars/store/calendar_service.h"

#include <algorithm>
#include <utility>

namespace quorvel::freedesktop::calendars {
namespace {

std::uint64_t hashOf(const VersionedProblem& problem) {
    ContentHash hash;
    hash.add(std::string_view(problem.problem.file));
    hash.add(problem.problem.line);
    hash.add(std::string_view(problem.problem.what));
    hash.add(problem.version);
    return hash.value();
}

} // namespace

ToldProblems::ToldProblems(CalendarProblemHandler tell)
    : m_tell(tell ? std::move(tell) : [](const CalendarProblem&) {}) {}

void ToldProblems::tell(const std::vector<VersionedProblem>& problems) {
    for (const VersionedProblem& problem : problems) {
        if (m_told.insert(hashOf(problem)).second) {
            m_tell(problem.problem);
        }
    }
}

void ToldProblems::tellAll(const std::vector<VersionedProblem>& problems) {
    std::unordered_set<std::uint64_t> withoutVersion;
    for (const VersionedProblem& problem : problems) {
        if (problem.version == 0) {
            withoutVersion.insert(hashOf(problem));
        }
    }
    for (const std::uint64_t before : m_withoutVersion) {
        if (withoutVersion.count(before) == 0) {
            m_told.erase(before);
        }
    }
    m_withoutVersion = std::move(withoutVersion);
    tell(problems);
}

CalendarService::CalendarService(std::shared_ptr<const TimeZone> userZone,
                                 CalendarProblemHandler onProblem)
    : m_told(std::move(onProblem))
    , m_userZone(std::make_shared<icalendar::ZoneClock>(std::move(userZone))) {}

CalendarService::~CalendarService() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_work.notify_all();
    if (m_worker.joinable()) {
        m_reader.cancel();
        m_worker.join();
    }
}

void CalendarService::setSources(std::vector<CalendarSource> sources) {
    const std::lock_guard lock(m_mutex);
    m_paths.clear();
    for (const CalendarSource& source : sources) {
        if (!source.text) {
            m_paths.push_back(source.name);
        }
    }
    m_newSources = std::move(sources);
    m_snapshot = nullptr;
    m_begun = std::nullopt;
}

void CalendarService::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    const std::lock_guard lock(m_mutex);
    m_userZone = std::make_shared<icalendar::ZoneClock>(std::move(userZone));
}

void CalendarService::setIndex(std::unique_ptr<CalendarIndex> index) {
    const std::lock_guard lock(m_readerMutex);
    m_reader.setIndex(std::move(index));
}

void CalendarService::setFileClock(std::function<std::int64_t()> clock) {
    const std::lock_guard lock(m_readerMutex);
    m_reader.setFileClock(std::move(clock));
}

void CalendarService::setWaits(CalendarWaits waits) {
    const std::lock_guard lock(m_mutex);
    m_waits = waits;
}

void CalendarService::follow(std::function<void()> changed) {
    const std::lock_guard lock(m_mutex);
    m_changed = std::move(changed);
}

std::vector<std::string> CalendarService::paths() const {
    const std::lock_guard lock(m_mutex);
    return m_paths;
}

bool CalendarService::isAnyReadable() const {
    const std::lock_guard lock(m_mutex);
    return m_snapshot ? m_snapshot->isAnyReadable : m_worker.joinable();
}

bool CalendarService::isAnyCalendar() const {
    const std::lock_guard lock(m_mutex);
    return m_snapshot ? m_snapshot->isAnyCalendar : m_worker.joinable();
}

// ---- in place

std::shared_ptr<StoreSnapshot> CalendarService::refreshNow() {
    const std::lock_guard readerLock(m_readerMutex);
    std::unique_lock lock(m_mutex);
    auto sources = std::exchange(m_newSources, std::nullopt);
    lock.unlock();
    if (sources) {
        m_reader.setSources(*std::move(sources));
    }
    auto snapshot = m_reader.refresh();
    if (!m_reader.isCancelled()) {
        m_told.tellAll(snapshot->problems);
    }
    lock.lock();
    m_snapshot = snapshot;
    return snapshot;
}

std::shared_ptr<const SearchResult> CalendarService::searchNow(const SearchRequest& request) {
    const std::lock_guard readerLock(m_readerMutex);
    auto result = m_reader.search(request);
    m_told.tell(result->problems);
    const std::lock_guard lock(m_mutex);
    m_request = request;
    m_result = result;
    return result;
}

CalendarService::View CalendarService::refresh() {
    std::unique_lock lock(m_mutex);
    const Clock::time_point deadline = nextDeadline();
    if (!m_waits) {
        const auto userZone = m_userZone;
        lock.unlock();
        return {refreshNow(), userZone, deadline};
    }
    if (const auto begun = std::exchange(m_begun, std::nullopt)) {
        letWorkerFinish(lock, deadline, *begun);
    } else {
        m_isRefreshWanted = true;
        letWorkerFinish(lock, deadline, askWorker());
    }
    return {m_snapshot ? m_snapshot : std::make_shared<StoreSnapshot>(), m_userZone, deadline};
}

std::shared_ptr<const SearchResult> CalendarService::search(const View& view,
                                                            const SearchRequest& request) {
    std::unique_lock lock(m_mutex);
    if (isAnswered(request)) {
        return m_result;
    }
    if (!m_waits) {
        lock.unlock();
        return searchNow(request);
    }
    m_wanted = request;
    if (request.calendars.empty()) {
        return nullptr;
    }
    m_isSearchWanted = true;
    letWorkerFinish(lock, view.deadline, askWorker());
    // What was found before stands in for what is not there yet.
    return m_request && m_request->window == request.window ? m_result : nullptr;
}

// ---- by the worker

CalendarService::Clock::time_point CalendarService::nextDeadline() {
    if (!m_waits) {
        return Clock::time_point::max();
    }
    const bool isFirst = !std::exchange(m_hasWaited, true);
    const std::chrono::duration<double> wait(isFirst ? m_waits->first : m_waits->later);
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(wait);
}

void CalendarService::beginReading() {
    const std::lock_guard lock(m_mutex);
    if (m_waits && !m_begun) {
        m_isRefreshWanted = true;
        m_begun = askWorker();
    }
}

// Under the lock. Returns the ticket by which m_done shows that the worker has finished.
std::uint64_t CalendarService::askWorker() {
    if (!m_worker.joinable()) {
        m_worker = std::thread([this] { work(); });
    }
    m_work.notify_all();
    return ++m_asked;
}

void CalendarService::letWorkerFinish(std::unique_lock<std::mutex>& lock,
                                      Clock::time_point deadline, std::uint64_t ticket) {
    const bool isDone = m_finished.wait_until(lock, deadline, [&] { return m_done >= ticket; });
    m_isMissed = m_isMissed || !isDone;
}

void CalendarService::work() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_work.wait(lock, [this] { return m_isStopping || m_done != m_asked; });
        if (m_isStopping) {
            return;
        }
        const std::uint64_t ticket = m_asked;
        lock.unlock();
        doWhatIsWanted();
        lock.lock();
        m_done = ticket;
        m_finished.notify_all();
        const auto changed = std::exchange(m_isMissed, false) ? m_changed : nullptr;
        lock.unlock();
        if (changed) {
            changed();
        }
        {
            const std::lock_guard readerLock(m_readerMutex);
            m_reader.keep();
            m_reader.load();
        }
        lock.lock();
    }
}

void CalendarService::doWhatIsWanted() {
    std::unique_lock lock(m_mutex);
    const bool isRefreshWanted = std::exchange(m_isRefreshWanted, false);
    const bool isSearchWanted = std::exchange(m_isSearchWanted, false);
    auto request = isSearchWanted ? m_wanted : std::nullopt;
    lock.unlock();
    if (isRefreshWanted) {
        refreshNow();
        lock.lock();
        request = request ? request : requestAfterRefresh();
        lock.unlock();
    }
    if (request) {
        searchNow(*request);
    }
}

// What will be asked next: a presentation asks for what the one before has asked. Absent where that
// is known, or nothing was asked yet.
std::optional<SearchRequest> CalendarService::requestAfterRefresh() const {
    if (!m_wanted) {
        return std::nullopt;
    }
    SearchRequest request{m_snapshot, m_userZone, m_wanted->window, m_wanted->narrow, {}};
    const auto& before = *m_wanted->snapshot;
    for (const auto& calendar : m_snapshot->calendars) {
        const bool isWanted = std::any_of(
            m_wanted->calendars.begin(), m_wanted->calendars.end(), [&](const auto& one) {
                return one->calendarIdentifier == calendar->calendarIdentifier;
            });
        if (isWanted || before.calendars.empty()) {
            request.calendars.push_back(calendar);
        }
    }
    return isAnswered(request) ? std::nullopt : std::optional(request);
}

bool CalendarService::isAnswered(const SearchRequest& request) const {
    if (!m_request || !m_result) {
        return false;
    }
    SearchRequest answered = *m_request;
    if (!m_result->isNarrow) {
        answered.narrow = request.narrow;
    }
    return answered == request;
}

} // namespace quorvel::freedesktop::calendars
