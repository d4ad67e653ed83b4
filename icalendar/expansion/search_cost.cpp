#include "icalendar/expansion/search_cost.h"

#include <algorithm>

namespace quorvel::icalendar {

namespace {

// The steps of all rules of a search until each gets few only.
constexpr std::int64_t mostSteps = 4'000'000;
// Of all calendars of a search; each takes a kilobyte in the end.
constexpr std::size_t mostFoundOfAll = 100'000;
constexpr std::size_t leastShare = 1'000; // of a calendar, whatever the others found

} // namespace

void SearchCost::endCalendar() {
    before.steps += calendar.steps;
    before.found += calendar.found;
    calendar = {};
}

std::size_t SearchCost::mostFound() const {
    return std::max(leastShare, (mostFoundOfAll - std::min(mostFoundOfAll, before.found)) / 2);
}

// The rest of the share is for events that do not repeat: one hostile rule must not crowd them out.
std::size_t SearchCost::mostRepeats() const {
    return mostFound() / 4 * 3;
}

bool SearchCost::hasSpentSteps() const {
    return before.steps + calendar.steps >= mostSteps;
}

bool SearchCost::allows(const CalendarCost& known) const {
    return !known.isTruncated && known.found <= mostFound() && known.repeats < mostRepeats();
}

} // namespace quorvel::icalendar
