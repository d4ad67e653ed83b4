// The stores' own side: which part of what is known a caller asks for.
#include "freedesktop/calendars/store/file_calendar_stores.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <unordered_set>
#include <utility>

#include "freedesktop/calendars/index/engine_version.h"
#include "freedesktop/calendars/store/calendar_service.h"

namespace quorvel::freedesktop {
namespace {

using calendars::SearchRequest;
using calendars::StoreSnapshot;

constexpr int longestRangeYears = 4;

std::int64_t wholeSeconds(platform::NSDate date) {
    return std::llround(platform::timeIntervalSince1970(date));
}

bool belongsTo(const icalendar::Window& window, const platform::EKEvent& event) {
    return icalendar::belongsTo(window, wholeSeconds(event.startDate), wholeSeconds(event.endDate));
}

// Those of the snapshot's calendars that are asked for.
platform::EKCalendars calendarsIn(const StoreSnapshot& snapshot,
                                  const platform::EKCalendars& wanted) {
    std::unordered_set<std::string_view> identifiers;
    for (const auto& calendar : wanted) {
        if (calendar) {
            identifiers.insert(calendar->calendarIdentifier);
        }
    }
    platform::EKCalendars result;
    for (const auto& calendar : snapshot.calendars) {
        if (identifiers.count(calendar->calendarIdentifier) != 0) {
            result.push_back(calendar);
        }
    }
    return result;
}

// Whole weeks or hours around it, so that what follows a moment later asks for the same.
icalendar::Window roundedWindow(const icalendar::Window& window, double unit) {
    return {std::floor(window.from / unit) * unit, std::ceil(window.to / unit) * unit};
}

// Absent where nothing can lie in it.
std::optional<icalendar::Window> windowOf(const platform::EKEventPredicate& predicate,
                                          const TimeZone& userZone) {
    constexpr double farthest = 2.54e11; // to the end of the year 9999
    icalendar::Window window{platform::timeIntervalSince1970(predicate.startDate),
                             platform::timeIntervalSince1970(predicate.endDate)};
    if (!(window.from <= window.to)) {
        return std::nullopt;
    }
    window.from = std::clamp(window.from, -farthest, farthest);
    window.to = std::clamp(window.to, -farthest, farthest);
    CivilTime last = userZone.localTime(static_cast<std::int64_t>(std::trunc(window.from)));
    last.year += longestRangeYears;
    window.to = std::min(window.to, static_cast<double>(userZone.instant(last)));
    return window;
}

} // namespace

class FileCalendarStores::Store final : public platform::EKEventStore {
public:
    explicit Store(std::shared_ptr<calendars::CalendarService> desk)
        : m_desk(std::move(desk))
        , m_view(m_desk->refresh()) {}

    platform::EKCalendars calendars() override { return m_view.snapshot->calendars; }

    std::shared_ptr<const platform::EKCalendar>
    calendarWithIdentifier(std::string_view id) override {
        for (const auto& calendar : m_view.snapshot->calendars) {
            if (calendar->calendarIdentifier == id) {
                return calendar;
            }
        }
        return nullptr;
    }

    platform::EKEvents
    eventsMatchingPredicate(const platform::EKEventPredicate& predicate) override {
        const auto window = windowOf(predicate, m_view.userZone->zone());
        if (!window) {
            return {};
        }
        constexpr double hour = 3600;
        constexpr double week = 7 * 24 * hour;
        const auto result =
            m_desk->search(m_view, {m_view.snapshot, m_view.userZone, roundedWindow(*window, week),
                                    roundedWindow(*window, hour),
                                    calendarsIn(*m_view.snapshot, predicate.calendars)});
        platform::EKEvents events;
        if (result) {
            std::copy_if(result->events.begin(), result->events.end(), std::back_inserter(events),
                         [&window](const auto& event) { return belongsTo(*window, *event); });
        }
        return events;
    }

private:
    std::shared_ptr<calendars::CalendarService> m_desk;
    calendars::CalendarService::View m_view;
};

FileCalendarStores::FileCalendarStores(std::shared_ptr<const TimeZone> userZone,
                                       CalendarProblemHandler onProblem)
    : m_desk(std::make_shared<calendars::CalendarService>(std::move(userZone),
                                                          std::move(onProblem))) {}

FileCalendarStores::~FileCalendarStores() = default;

void FileCalendarStores::setSources(std::vector<CalendarSource> sources) {
    m_desk->setSources(std::move(sources));
}

void FileCalendarStores::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    m_desk->setTimeZone(std::move(userZone));
}

void FileCalendarStores::setIndex(const std::string& folder,
                                  std::function<void(const std::string&)> say) {
    m_desk->setIndex(std::make_unique<calendars::CalendarIndex>(folder, calendars::engineVersion(),
                                                                std::move(say)));
}

void FileCalendarStores::setFileClock(std::function<std::int64_t()> clock) {
    m_desk->setFileClock(std::move(clock));
}

void FileCalendarStores::setWaits(CalendarWaits waits) {
    m_desk->setWaits(waits);
}

void FileCalendarStores::follow(std::function<void()> changed) {
    m_desk->follow(std::move(changed));
}

std::vector<std::string> FileCalendarStores::paths() const {
    return m_desk->paths();
}

void FileCalendarStores::beginReading() {
    m_desk->beginReading();
}

std::unique_ptr<platform::EKEventStore> FileCalendarStores::makeEventStore() {
    return std::make_unique<Store>(m_desk);
}

bool FileCalendarStores::anyReadable() const {
    return m_desk->isAnyReadable();
}

bool FileCalendarStores::anyCalendar() const {
    return m_desk->isAnyCalendar();
}

} // namespace quorvel::freedesktop
