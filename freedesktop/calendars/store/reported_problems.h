// Reports each problem of the calendars once.
#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "freedesktop/calendars/files/calendar_problem.h"

namespace quorvel::freedesktop::calendars {

// Removes problems beyond a large number, and adds one that counts them.
void limitProblems(std::vector<VersionedProblem>& problems);

// Belongs to the thread that uses the reader; the handler is called on it.
class ReportedProblems {
public:
    explicit ReportedProblems(CalendarProblemHandler onProblem); // may be null

    // Reports those that were not reported before.
    void report(const std::vector<VersionedProblem>& problems);
    // The same, and these are all problems that there are now: a problem without a version that is
    // not among them is reported again when it returns.
    void reportAll(const std::vector<VersionedProblem>& problems);

private:
    CalendarProblemHandler m_onProblem;           // never null
    std::unordered_set<std::uint64_t> m_reported; // hashes
    std::unordered_set<std::uint64_t> m_withoutVersion;
};

} // namespace quorvel::freedesktop::calendars
