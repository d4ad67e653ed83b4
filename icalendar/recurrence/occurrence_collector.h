// What becomes of the local times that a recurrence rule gives (RFC 5545 3.3.10): COUNT, UNTIL, the
// window, and the budget of steps. In line, as the walks call it for every candidate.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "base/integer_division.h"
#include "base/time_units.h"
#include "icalendar/recurrence/recurrence.h"

namespace quorvel::icalendar {

// So many times or positions of a day are written down in the time of one step.
inline constexpr std::int64_t timesPerStep = 8;

// Whether a rule has any occurrence at all.
class ExistenceTest {
public:
    virtual ~ExistenceTest() = default;
    virtual bool hasAnyOccurrence() const = 0;
};

// Local times are seconds since 1970 as if they were UTC; they are offered in ascending order. The
// request must outlive it.
class OccurrenceCollector {
public:
    enum class Purpose { collect, findEndOfCount };

    OccurrenceCollector(const RecurrenceRequest& request, Purpose purpose);

    // Asked once, after many steps without an occurrence. Null: the rule is taken to have some. The
    // test must outlive the calls of spend() and offer().
    void setExistenceTest(const ExistenceTest* test) { m_existenceTest = test; }

    // Candidates before the first wanted time and behind the last one need not be offered.
    std::int64_t firstWanted() const {
        return m_skipsToWindow ? std::max(m_from, m_request.start) : m_request.start;
    }
    std::int64_t lastWanted() const { return m_to; }
    std::int64_t firstWantedDay() const { return floorDivision(firstWanted(), secondsPerDay); }
    std::int64_t lastWantedDay() const { return floorDivision(m_to, secondsPerDay); }

    // Takes the start of the event where it counts. False: nothing more is wanted.
    bool addStart();
    // COUNT is known to end with this local time, so that nothing has to be counted.
    void setLastCounted(std::int64_t localTime);
    // Takes a local time that the rule gives. False: nothing more is wanted.
    bool offer(std::int64_t localTime) {
        if (localTime < m_request.start ||
            (localTime == m_request.start && m_request.startCounts)) {
            return true;
        }
        if (localTime > m_to) {
            return false;
        }
        if (m_skipsToWindow && localTime < m_from) {
            return true;
        }
        return spend(1) && add(localTime);
    }
    // False: the budget is spent, or the rule has no occurrence; the walk has to end.
    bool spend(std::int64_t steps) {
        if (steps > m_request.budget - m_result.stepsSpent) {
            return endForWantOfSteps();
        }
        m_result.stepsSpent += steps;
        m_stepsSinceLast += steps;
        if (m_stepsSinceLast > mostStepsBeforeTest && !m_isKnownToOccur) {
            m_isKnownToOccur = m_existenceTest == nullptr || m_existenceTest->hasAnyOccurrence();
            m_hasEnded = !m_isKnownToOccur;
        }
        return !m_hasEnded;
    }
    bool hasEnded() const { return m_hasEnded; }

    void setProblem(TranslatableText problem) { m_result.problem = std::move(problem); }
    RecurrenceStarts takeResult() { return std::move(m_result); }
    CountEnd endOfCount() const {
        return {m_lastCounted, m_result.problem.empty(), m_result.stepsSpent};
    }

private:
    static constexpr std::int64_t mostStepsBeforeTest = 2'000;

    bool add(std::int64_t localTime);
    bool mayCountMore() const { return !m_request.rule.count || m_counted < *m_request.rule.count; }
    bool isCountedAnew(std::int64_t localTime);
    void storeWithinWindow(std::int64_t localTime);
    bool endForWantOfSteps();

    const RecurrenceRequest& m_request;
    const ExistenceTest* m_existenceTest = nullptr;
    std::int64_t m_from;
    std::int64_t m_to;
    bool m_skipsToWindow; // nothing before the window has to be counted
    std::int64_t m_counted = 0;
    std::int64_t m_lastCounted = 0;
    std::int64_t m_convertedDay = std::numeric_limits<std::int64_t>::min(); // the latest
    std::vector<std::int64_t> m_movedTimes; // where the latest gap moved its local times, sorted
    std::int64_t m_stepsSinceLast = 0;      // since the last occurrence
    bool m_isKnownToOccur = false;
    bool m_hasEnded = false;
    RecurrenceStarts m_result;
};

} // namespace quorvel::icalendar
