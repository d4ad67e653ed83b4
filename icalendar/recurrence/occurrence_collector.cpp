#include "icalendar/recurrence/occurrence_collector.h"

#include <algorithm>

namespace quorvel::icalendar {
namespace {

constexpr std::int64_t firstLocalTime = -62135596800; // 0001-01-01T00:00:00
constexpr std::int64_t lastLocalTime = 253402300799;  // 9999-12-31T23:59:59
constexpr std::size_t mostLocalTimes = 100'000;
// The time that a zone takes to convert a local time of another day.
constexpr std::int64_t stepsOfConvertedDay = 16;

} // namespace

OccurrenceCollector::OccurrenceCollector(const RecurrenceRequest& request, Purpose purpose)
    : m_request(request)
    , m_from(std::max(request.from, firstLocalTime))
    , m_to(std::min(request.until.value_or(lastLocalTime), lastLocalTime))
    , m_skipsToWindow(!request.rule.count && request.from > request.start) {
    if (purpose == Purpose::collect) {
        m_to = std::min(m_to, request.to);
    } else {
        m_from = lastLocalTime; // nothing is stored
        m_skipsToWindow = false;
        m_lastCounted = std::min(request.start, m_to);
    }
}

bool OccurrenceCollector::addStart() {
    if (m_request.startCounts) {
        m_counted = isCountedAnew(m_request.start) ? 1 : 0;
        storeWithinWindow(m_request.start);
    }
    return m_to >= m_request.start && mayCountMore();
}

void OccurrenceCollector::setLastCounted(std::int64_t localTime) {
    m_to = localTime;
    m_skipsToWindow = m_from > m_request.start;
    m_lastCounted = localTime;
}

bool OccurrenceCollector::add(std::int64_t localTime) {
    m_stepsSinceLast = 0;
    if (m_request.rule.count && m_request.existingLocalTime) {
        const std::int64_t day = floorDivision(localTime, secondsPerDay);
        if (day != m_convertedDay && !spend(stepsOfConvertedDay)) {
            return false;
        }
        m_convertedDay = day;
    }
    m_counted += isCountedAnew(localTime) ? 1 : 0;
    m_lastCounted = localTime;
    storeWithinWindow(localTime);
    if (m_result.localTimes.size() >= mostLocalTimes) {
        m_result.problem = translatable("it has too many occurrences");
        return false;
    }
    return mayCountMore();
}

// False: an earlier local time was moved to this one, out of a gap, and was counted.
bool OccurrenceCollector::isCountedAnew(std::int64_t localTime) {
    if (!m_request.rule.count || !m_request.existingLocalTime) {
        return true;
    }
    const std::int64_t existing = m_request.existingLocalTime(localTime);
    if (existing == localTime) {
        return !std::binary_search(m_movedTimes.begin(), m_movedTimes.end(), localTime);
    }
    if (!m_movedTimes.empty() && m_movedTimes.back() < localTime) { // of an earlier gap
        m_movedTimes.clear();
    }
    m_movedTimes.push_back(existing);
    return true;
}

void OccurrenceCollector::storeWithinWindow(std::int64_t localTime) {
    if (localTime >= m_from && localTime <= m_to) {
        m_result.localTimes.push_back(localTime);
    }
}

bool OccurrenceCollector::endForWantOfSteps() {
    m_result.stepsSpent = m_request.budget;
    m_result.problem = translatable("it takes too many steps");
    m_hasEnded = true;
    return false;
}

} // namespace quorvel::icalendar
