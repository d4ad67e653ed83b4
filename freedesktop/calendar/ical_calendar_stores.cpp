// The stores' own side: which part of what is known a caller asks for.
#include "freedesktop/calendar/ical_calendar_stores.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <iterator>
#include <optional>
#include <system_error>
#include <unordered_set>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/calendar/index/engine_version.h"
#include "freedesktop/calendar/store_desk.h"

namespace quorvel::freedesktop {
namespace {

using ics::SearchRequest;
using ics::StoreSnapshot;

constexpr int longestRangeYears = 4;
constexpr std::string_view dataServerScheme = "eds:";

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

bool isAbsolute(std::string_view path) {
    return !path.empty() && path.front() == '/';
}

CalendarSource optionalFolder(std::string path) {
    CalendarSource source = CalendarSource::at(std::move(path));
    source.isOptional = true;
    return source;
}

} // namespace

std::optional<std::string> problemWithSource(const CalendarSource& source) {
    if (source.text) {
        return std::nullopt;
    }
    if (source.name.empty()) {
        return "the name is empty";
    }
    if (source.name.substr(0, dataServerScheme.size()) == dataServerScheme) {
        return "Evolution Data Server is named as 'eds:' alone";
    }
    struct stat status {};
    if (source.name.find('\0') != std::string::npos || stat(source.name.c_str(), &status) != 0) {
        return errno == EACCES ? "it cannot be reached: permission denied"
                               : "there is no such file or folder";
    }
    if (!S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode)) {
        return "it is neither a file nor a folder";
    }
    if (access(source.name.c_str(), S_ISDIR(status.st_mode) ? R_OK | X_OK : R_OK) != 0) {
        return "it cannot be read: " + std::generic_category().message(errno);
    }
    return std::nullopt;
}

std::vector<CalendarSource> defaultCalendarSources(std::string_view xdgDataHome,
                                                   std::string_view home) {
    std::vector<CalendarSource> sources;
    if (isAbsolute(xdgDataHome)) {
        sources.push_back(optionalFolder(std::string(xdgDataHome) + "/calendars"));
    } else if (isAbsolute(home)) {
        sources.push_back(optionalFolder(std::string(home) + "/.local/share/calendars"));
    }
    if (isAbsolute(home)) {
        sources.push_back(optionalFolder(std::string(home) + "/.calendars"));
    }
    return sources;
}

class IcalCalendarStores::Store final : public platform::EKEventStore {
public:
    explicit Store(std::shared_ptr<ics::StoreDesk> desk)
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
    std::shared_ptr<ics::StoreDesk> m_desk;
    ics::StoreDesk::View m_view;
};

IcalCalendarStores::IcalCalendarStores(std::shared_ptr<const TimeZone> userZone,
                                       CalendarProblemHandler onProblem)
    : m_desk(std::make_shared<ics::StoreDesk>(std::move(userZone), std::move(onProblem))) {}

IcalCalendarStores::~IcalCalendarStores() = default;

void IcalCalendarStores::setSources(std::vector<CalendarSource> sources) {
    m_desk->setSources(std::move(sources));
}

void IcalCalendarStores::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    m_desk->setTimeZone(std::move(userZone));
}

void IcalCalendarStores::setIndex(const std::string& folder,
                                  std::function<void(const std::string&)> say) {
    m_desk->setIndex(
        std::make_unique<ics::CalendarIndex>(folder, ics::engineVersion(), std::move(say)));
}

void IcalCalendarStores::setFileClock(std::function<std::int64_t()> clock) {
    m_desk->setFileClock(std::move(clock));
}

void IcalCalendarStores::setWaits(CalendarWaits waits) {
    m_desk->setWaits(waits);
}

void IcalCalendarStores::follow(std::function<void()> changed) {
    m_desk->follow(std::move(changed));
}

std::vector<std::string> IcalCalendarStores::paths() const {
    return m_desk->paths();
}

void IcalCalendarStores::beginReading() {
    m_desk->beginReading();
}

std::unique_ptr<platform::EKEventStore> IcalCalendarStores::makeEventStore() {
    return std::make_unique<Store>(m_desk);
}

bool IcalCalendarStores::anyReadable() const {
    return m_desk->isAnyReadable();
}

bool IcalCalendarStores::anyCalendar() const {
    return m_desk->isAnyCalendar();
}

} // namespace quorvel::freedesktop
