// A whole calendar from a stranger, read and searched as the widget does it: at fixed times and
// around the first start that it names.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>

#include "base/time_units.h"
#include "freedesktop/calendars/store/file_calendar_stores.h"
#include "icalendar/text/property_values.h"
#include "tests/fuzz/fuzzing.h"

namespace {

using namespace quorvel;
using namespace quorvel::freedesktop;
using quorvel::fuzzing::processorTime;
using quorvel::fuzzing::require;
using quorvel::platform::EKEvents;
using quorvel::platform::EKEventStore;
using quorvel::platform::NSDate;

constexpr double greatestMilliseconds = 20'000; // under the sanitizers

// Made once: what is known of them is no part of an input's time.
const std::shared_ptr<const TimeZone>& userZone() {
    static const std::shared_ptr<const TimeZone> zone = namedTimeZone("Europe/Berlin");
    return zone;
}

// Midnight before the first start; of a usual day where there is none.
CivilTime firstStart(std::string_view text) {
    const std::size_t name = text.find("DTSTART");
    if (name != std::string_view::npos) {
        const std::string_view rest = text.substr(name, 100);
        const std::size_t colon = rest.find(':');
        if (colon != std::string_view::npos) {
            if (const auto time = icalendar::parseTime(rest.substr(colon + 1, 8))) {
                return time->civil;
            }
        }
    }
    return {2026, 3, 10, 0, 0, 0};
}

void check(const EKEvents& events, NSDate from, NSDate to) {
    const auto comesBefore = [](const auto& a, const auto& b) {
        if (a->startDate != b->startDate) {
            return a->startDate < b->startDate;
        }
        return std::tie(b->isAllDay, a->title, a->persistentEvent.eventIdentifier) <
               std::tie(a->isAllDay, b->title, b->persistentEvent.eventIdentifier);
    };
    require(std::is_sorted(events.begin(), events.end(), comesBefore),
            "events are sorted by start, kind, title and identifier");
    for (const auto& event : events) {
        require(event->endDate >= event->startDate, "an event ends after it starts");
        require(event->startDate <= to && (event->endDate > from || event->startDate == from),
                "an event belongs to the window");
        require(!event->persistentEvent.eventIdentifier.empty() && event->calendar != nullptr,
                "an event has an identifier and a calendar");
    }
}

void search(EKEventStore& store, const CivilTime& begin, double days) {
    const NSDate from = dateOf(*userZone(), begin);
    const NSDate to = from.dateByAddingTimeInterval(days * secondsPerDay);
    check(store.eventsMatchingPredicate({from, to, store.calendars()}), from, to);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    userZone();
    const double before = processorTime();
    FileCalendarStores stores(userZone(), [](const CalendarProblem& problem) {
        require(!problem.what.empty(), "a problem is named");
    });
    stores.setSources({CalendarSource::inMemory("fuzz", text)});
    const auto store = stores.makeEventStore();
    const CivilTime start = firstStart(text);
    search(*store, start, 2);
    search(*store, start, 400);
    search(*store, {2026, 3, 10, 0, 0, 0}, 3);
    search(*store, {1, 1, 1, 0, 0, 0}, 2);
    search(*store, {9999, 12, 30, 0, 0, 0}, 2);
    require(processorTime() - before < greatestMilliseconds, "an input is done in time");
    return 0;
}
