#include "freedesktop/calendars/store/file_calendar_stores.h"

#include <string_view>
#include <unordered_set>
#include <utility>

#include "freedesktop/calendars/index/engine_version.h"
#include "freedesktop/calendars/store/calendar_service.h"
#include "freedesktop/calendars/store/search_window.h"

namespace quorvel::freedesktop {
namespace {

// Those of the snapshot's calendars that are wanted, in the snapshot's order.
platform::EKCalendars calendarsIn(const calendars::StoreSnapshot& snapshot,
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

} // namespace

class FileCalendarStores::Store final : public platform::EKEventStore {
public:
    explicit Store(std::shared_ptr<calendars::CalendarService> service)
        : m_service(std::move(service))
        , m_view(m_service->refresh()) {}

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
        const auto window = calendars::searchWindow(predicate, *m_view.userZone);
        if (!window) {
            return {};
        }
        const auto result = m_service->search(
            m_view,
            {m_view.snapshot, m_view.userZone, calendars::wholeWeeks(*window),
             calendars::wholeHours(*window), calendarsIn(*m_view.snapshot, predicate.calendars)});
        platform::EKEvents events;
        if (result) {
            calendars::addEventsWithin(*window, result->events, events);
        }
        return events;
    }

private:
    std::shared_ptr<calendars::CalendarService> m_service;
    calendars::CalendarService::View m_view;
};

FileCalendarStores::FileCalendarStores(std::shared_ptr<const TimeZone> userZone,
                                       CalendarProblemHandler onProblem)
    : m_service(std::make_shared<calendars::CalendarService>(std::move(userZone),
                                                             std::move(onProblem))) {}

FileCalendarStores::~FileCalendarStores() = default;

void FileCalendarStores::setSources(std::vector<CalendarSource> sources) {
    m_service->setSources(std::move(sources));
}

void FileCalendarStores::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    m_service->setTimeZone(std::move(userZone));
}

void FileCalendarStores::setIndex(const std::string& folder,
                                  std::function<void(const std::string&)> onProblem) {
    m_service->setIndex(std::make_unique<calendars::CalendarIndex>(
        folder, calendars::engineVersion(), std::move(onProblem)));
}

void FileCalendarStores::setFileClock(std::function<std::int64_t()> clock) {
    m_service->setFileClock(std::move(clock));
}

void FileCalendarStores::setWaits(CalendarWaits waits) {
    m_service->setWaits(waits);
}

void FileCalendarStores::setChangedHandler(std::function<void()> onChanged) {
    m_service->setChangedHandler(std::move(onChanged));
}

const std::vector<std::string>& FileCalendarStores::paths() const {
    return m_service->paths();
}

void FileCalendarStores::beginReading() {
    m_service->beginReading();
}

std::unique_ptr<platform::EKEventStore> FileCalendarStores::makeEventStore() {
    return std::make_unique<Store>(m_service);
}

bool FileCalendarStores::anyReadable() const {
    return m_service->isAnyReadable();
}

bool FileCalendarStores::anyCalendar() const {
    return m_service->isAnyCalendar();
}

std::string FileCalendarStores::storeOf(std::string_view identifier) const {
    return m_service->storeOf(identifier);
}

std::vector<std::string> FileCalendarStores::deselectedCalendars() const {
    return m_service->deselectedCalendars();
}

std::vector<CalendarProblem> FileCalendarStores::unreadable() const {
    return m_service->unreadable();
}

bool FileCalendarStores::isLate() const {
    return m_service->isLate();
}

} // namespace quorvel::freedesktop
