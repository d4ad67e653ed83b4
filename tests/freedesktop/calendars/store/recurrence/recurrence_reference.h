// A slow and simple expansion of recurrence rules, which the fast one is compared with: it tests
// every day, and below a day every hour, minute or second.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <vector>

#include "tests/freedesktop/calendars/store/recurrence/random_recurrence.h"

namespace quorvel::freedesktop {

class Reference {
public:
    // The case must outlive the reference.
    explicit Reference(const Case& one);

    // The local times of all occurrences from the start of the case to `last`, in order.
    std::vector<std::int64_t> through(std::int64_t last) const;

private:
    using Periods = std::map<std::int64_t, std::vector<std::int64_t>>; // by their number

    void takeFromStart();
    Periods periodsThrough(std::int64_t last) const;
    std::vector<std::int64_t> picked(const std::vector<std::int64_t>& period) const;

    std::chrono::sys_days weekBegin(std::chrono::sys_days day) const;
    std::chrono::sys_days firstWeek(int year) const;
    int weekYear(std::chrono::sys_days day) const;
    bool passesWeek(std::chrono::sys_days day) const;
    bool passesWeekday(std::chrono::sys_days day, std::chrono::sys_days begin,
                       std::chrono::sys_days end) const;
    bool passes(std::chrono::sys_days day) const;
    std::int64_t periodNumber(std::chrono::sys_days day) const;

    std::int64_t startTime() const; // seconds since midnight
    void addTimes(std::chrono::sys_days day, Periods& periods) const;
    void addUnits(std::chrono::sys_days day, Periods& periods) const;

    const Case& m_case;
    RuleParts m_rule; // completed from the start
    std::chrono::sys_days m_start;
};

} // namespace quorvel::freedesktop
