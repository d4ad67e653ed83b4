// One state for all stores: the sources as last read, the zones, and what was found amiss.
#include "freedesktop/calendar/ical_calendar_stores.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <iterator>
#include <map>
#include <mutex>
#include <set>
#include <system_error>
#include <tuple>
#include <unordered_set>

#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/calendar/calendar_files.h"
#include "freedesktop/calendar/event_order.h"
#include "freedesktop/calendar/occurrences.h"
#include "freedesktop/calendar/zone_clock.h"

namespace quorvel::freedesktop {
namespace {

using Snapshot = std::vector<std::shared_ptr<ics::LoadedCalendar>>;

constexpr std::size_t mostProblemsWhileExpanding = 50;
constexpr int longestRangeYears = 4;
constexpr std::string_view dataServerScheme = "eds:";

std::string identifierOf(const platform::EKCalendar& calendar, const ics::Occurrence& occurrence) {
    const ics::IcsFile& file = occurrence.file->ics;
    std::string identifier = calendar.calendarIdentifier;
    identifier += ':';
    identifier += ics::validUtf8(file.slice(occurrence.event->uid));
    if (occurrence.recurrence) {
        const auto since = static_cast<std::int64_t>(platform::referenceDateSince1970);
        identifier += ":RID=" + std::to_string(*occurrence.recurrence - since);
    }
    return identifier;
}

std::optional<std::string> textOf(const ics::IcsFile& file,
                                  const std::optional<ics::Slice>& slice) {
    return slice ? std::optional(ics::readText(file.slice(*slice))) : std::nullopt;
}

std::shared_ptr<const platform::EKEvent>
makeEvent(const std::shared_ptr<const platform::EKCalendar>& calendar,
          const ics::Occurrence& occurrence) {
    const ics::IcsFile& file = occurrence.file->ics;
    auto event = std::make_shared<platform::EKEvent>();
    event->title = textOf(file, occurrence.event->title);
    event->location = textOf(file, occurrence.event->location);
    event->startDate =
        platform::dateWithTimeIntervalSince1970(static_cast<double>(occurrence.start));
    event->endDate = platform::dateWithTimeIntervalSince1970(static_cast<double>(occurrence.end));
    event->isAllDay = occurrence.isAllDay;
    event->calendar = calendar;
    event->persistentEvent.eventIdentifier = identifierOf(*calendar, occurrence);
    return event;
}

std::int64_t wholeSeconds(platform::NSDate date) {
    return std::llround(platform::timeIntervalSince1970(date));
}

bool belongsTo(const ics::Window& window, const platform::EKEvent& event) {
    return ics::belongsTo(window, wholeSeconds(event.startDate), wholeSeconds(event.endDate));
}

// A folder of events may be empty; of files that are there, one at least must be a calendar's.
bool couldBeRead(const std::shared_ptr<ics::LoadedCalendar>& calendar) {
    const auto& files = calendar->files;
    return files.empty() || std::any_of(files.begin(), files.end(),
                                        [](const auto& file) { return file->ics.isCalendar; });
}

// Those of the calendars that are asked for.
Snapshot calendarsIn(const Snapshot& snapshot, const platform::EKCalendars& wanted) {
    std::unordered_set<std::string_view> identifiers;
    for (const auto& calendar : wanted) {
        if (calendar) {
            identifiers.insert(calendar->calendarIdentifier);
        }
    }
    Snapshot result;
    for (const auto& loaded : snapshot) {
        if (identifiers.count(loaded->calendar->calendarIdentifier) != 0) {
            result.push_back(loaded);
        }
    }
    return result;
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

// What all stores share; used under the lock only.
class IcalCalendarStores::State {
public:
    State(std::shared_ptr<const TimeZone> userZone, CalendarProblemHandler onProblem)
        : m_userZone(std::make_shared<ics::ZoneClock>(std::move(userZone)))
        , m_report(onProblem ? std::move(onProblem) : [](const CalendarProblem&) {})
        , m_reportExpansion([this](ics::LoadedFile& file, std::size_t line, std::string what) {
            reportExpansion(file, line, std::move(what));
        }) {}

    void setSources(std::vector<CalendarSource> sources) {
        const std::lock_guard lock(m_mutex);
        m_current.clear();
        m_paths.clear();
        for (CalendarSource& source : sources) {
            if (!source.text) {
                m_paths.push_back(source.name);
            }
            auto key = std::pair(source.name, source.text);
            auto& known = m_known[std::move(key)];
            if (!known) {
                known = std::make_unique<ics::CalendarFiles>(std::move(source));
            }
            m_current.push_back(known.get());
        }
        m_anyReadable = false;
    }

    void setTimeZone(std::shared_ptr<const TimeZone> userZone) {
        const std::lock_guard lock(m_mutex);
        m_userZone = std::make_shared<ics::ZoneClock>(std::move(userZone));
    }

    std::vector<std::string> paths() const {
        const std::lock_guard lock(m_mutex);
        return m_paths;
    }

    // The calendars as they are on disk now, and the clock that their floating times follow.
    std::pair<Snapshot, std::shared_ptr<ics::ZoneClock>> refresh() {
        const std::lock_guard lock(m_mutex);
        std::mutex zonesMutex; // files are read by more than one thread
        const ics::ReadContext context{[this, &zonesMutex](std::string_view name) {
                                           const std::lock_guard zonesLock(zonesMutex);
                                           return m_zones.named(name) != nullptr;
                                       },
                                       m_report};
        Snapshot snapshot;
        std::unordered_set<std::string_view> shown;
        m_anyReadable = false;
        for (ics::CalendarFiles* const files : m_current) {
            files->refresh(context);
            m_anyReadable = m_anyReadable || files->isReadable();
            for (const auto& calendar : files->calendars()) {
                if (shown.insert(calendar->calendar->calendarIdentifier).second) {
                    snapshot.push_back(calendar);
                }
            }
        }
        m_anyCalendar = std::any_of(snapshot.begin(), snapshot.end(), couldBeRead);
        return {std::move(snapshot), m_userZone};
    }

    bool anyReadable() const {
        const std::lock_guard lock(m_mutex);
        return m_anyReadable;
    }

    bool anyCalendar() const {
        const std::lock_guard lock(m_mutex);
        return m_anyCalendar;
    }

    platform::EKEvents find(const Snapshot& snapshot,
                            const std::shared_ptr<ics::ZoneClock>& userZone,
                            const platform::EKEventPredicate& predicate);

private:
    // What was searched, and all that was found.
    struct Search {
        Snapshot calendars;
        std::shared_ptr<ics::ZoneClock> userZone;
        ics::Window window;
        platform::EKEvents events;
    };

    bool isRemembered(const Snapshot& calendars, const std::shared_ptr<ics::ZoneClock>& userZone,
                      const ics::Window& window) const;
    platform::EKEvents expand(const Snapshot& calendars, ics::ZoneClock& userZone,
                              const ics::Window& window);

    void reportExpansion(ics::LoadedFile& file, std::size_t line, std::string what) {
        if (file.reported.size() < mostProblemsWhileExpanding &&
            file.reported.emplace(line, what).second) {
            m_report({file.path, line, std::move(what)});
        }
    }

    mutable std::mutex m_mutex;
    std::shared_ptr<ics::ZoneClock> m_userZone;
    CalendarProblemHandler m_report;
    ics::ReportExpansion m_reportExpansion;
    ics::ZoneNames m_zones;
    std::map<std::pair<std::string, std::optional<std::string>>,
             std::unique_ptr<ics::CalendarFiles>>
        m_known; // those that were asked for before stay, with what was read
    std::vector<ics::CalendarFiles*> m_current;
    std::vector<std::string> m_paths; // of those that are not texts
    Search m_lastSearch;              // a presentation asks again for what the one before has asked
    bool m_anyReadable = false;
    bool m_anyCalendar = false;
};

class IcalCalendarStores::Store final : public platform::EKEventStore {
public:
    explicit Store(std::shared_ptr<State> state)
        : m_state(std::move(state)) {
        std::tie(m_snapshot, m_userZone) = m_state->refresh();
    }

    platform::EKCalendars calendars() override {
        platform::EKCalendars result;
        for (const auto& loaded : m_snapshot) {
            result.push_back(loaded->calendar);
        }
        return result;
    }

    std::shared_ptr<const platform::EKCalendar>
    calendarWithIdentifier(std::string_view id) override {
        for (const auto& loaded : m_snapshot) {
            if (loaded->calendar->calendarIdentifier == id) {
                return loaded->calendar;
            }
        }
        return nullptr;
    }

    platform::EKEvents
    eventsMatchingPredicate(const platform::EKEventPredicate& predicate) override {
        return m_state->find(m_snapshot, m_userZone, predicate);
    }

private:
    std::shared_ptr<State> m_state;
    Snapshot m_snapshot;
    std::shared_ptr<ics::ZoneClock> m_userZone;
};

platform::EKEvents IcalCalendarStores::State::find(const Snapshot& snapshot,
                                                   const std::shared_ptr<ics::ZoneClock>& userZone,
                                                   const platform::EKEventPredicate& predicate) {
    constexpr double farthest = 2.54e11; // to the end of the year 9999
    constexpr double hour = 3600;
    ics::Window window{platform::timeIntervalSince1970(predicate.startDate),
                       platform::timeIntervalSince1970(predicate.endDate)};
    if (!(window.from <= window.to)) {
        return {};
    }
    window.from = std::clamp(window.from, -farthest, farthest);
    window.to = std::clamp(window.to, -farthest, farthest);

    const std::lock_guard lock(m_mutex);
    CivilTime last = userZone->civil(static_cast<std::int64_t>(window.from));
    last.year += longestRangeYears;
    window.to = std::min(window.to, static_cast<double>(userZone->platformInstant(last)));

    const Snapshot wanted = calendarsIn(snapshot, predicate.calendars);
    // From the full hour, so that the search that follows a moment later finds it remembered.
    const ics::Window searched{std::floor(window.from / hour) * hour, window.to};
    if (!isRemembered(wanted, userZone, searched)) {
        m_lastSearch = {wanted, userZone, searched, expand(wanted, *userZone, searched)};
    }
    platform::EKEvents events;
    std::copy_if(m_lastSearch.events.begin(), m_lastSearch.events.end(), std::back_inserter(events),
                 [&window](const auto& event) { return belongsTo(window, *event); });
    return events;
}

bool IcalCalendarStores::State::isRemembered(const Snapshot& calendars,
                                             const std::shared_ptr<ics::ZoneClock>& userZone,
                                             const ics::Window& window) const {
    return m_lastSearch.calendars == calendars && m_lastSearch.userZone == userZone &&
           m_lastSearch.window.from == window.from && m_lastSearch.window.to == window.to;
}

platform::EKEvents IcalCalendarStores::State::expand(const Snapshot& calendars,
                                                     ics::ZoneClock& userZone,
                                                     const ics::Window& window) {
    platform::EKEvents events;
    ics::Expander expander(window, userZone, m_zones, m_reportExpansion);
    std::vector<ics::Occurrence> occurrences;
    for (const auto& loaded : calendars) {
        occurrences.clear();
        for (const auto& entry : loaded->entries) {
            if (expander.mayMeetWindow(entry.firstDay, entry.lastDay)) {
                expander.expand(entry.event, loaded->overrides, occurrences);
            }
        }
        for (const ics::Occurrence& occurrence : occurrences) {
            events.push_back(makeEvent(loaded->calendar, occurrence));
        }
    }
    std::sort(events.begin(), events.end(), comesBefore);
    return events;
}

IcalCalendarStores::IcalCalendarStores(std::shared_ptr<const TimeZone> userZone,
                                       CalendarProblemHandler onProblem)
    : m_state(std::make_shared<State>(std::move(userZone), std::move(onProblem))) {}

IcalCalendarStores::~IcalCalendarStores() = default;

void IcalCalendarStores::setSources(std::vector<CalendarSource> sources) {
    m_state->setSources(std::move(sources));
}

void IcalCalendarStores::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    m_state->setTimeZone(std::move(userZone));
}

std::vector<std::string> IcalCalendarStores::paths() const {
    return m_state->paths();
}

std::unique_ptr<platform::EKEventStore> IcalCalendarStores::makeEventStore() {
    return std::make_unique<Store>(m_state);
}

bool IcalCalendarStores::anyReadable() const {
    return m_state->anyReadable();
}

bool IcalCalendarStores::anyCalendar() const {
    return m_state->anyCalendar();
}

} // namespace quorvel::freedesktop
