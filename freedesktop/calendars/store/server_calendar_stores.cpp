#include "freedesktop/calendars/store/server_calendar_stores.h"

#include <algorithm>
#include <cstdio>

#include "freedesktop/calendars/store/event_order.h"
#include "freedesktop/calendars/store/server_calendars.h"

namespace quorvel::freedesktop {

using eds::Outcome;
using platform::EKCalendars;
using platform::EKEventPredicate;
using platform::EKEvents;

namespace {

constexpr std::size_t mostProblemsOfEvents = 100;

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// One calendar of a store.
struct ListedCalendar {
    std::string serverIdentifier;
    std::shared_ptr<const platform::EKCalendar> calendar;
};
using ListedCalendars = std::vector<ListedCalendar>;

std::string placeOf(const ListedCalendar& listed) {
    return "the calendar '" + listed.calendar->title + "' of " + std::string(dataServerName);
}

std::string secondsText(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", seconds);
    return text;
}

bool isWanted(const ListedCalendar& listed, const EKCalendars& wanted) {
    return std::any_of(wanted.begin(), wanted.end(), [&](const auto& calendar) {
        return calendar && calendar->calendarIdentifier == listed.calendar->calendarIdentifier;
    });
}

// What a store may still wait.
class Patience {
public:
    explicit Patience(double seconds)
        : m_left(seconds) {}

    template <class Ask>
    auto spend(Ask ask) {
        const Clock::time_point begin = Clock::now();
        auto answer = ask(begin + std::chrono::duration_cast<Clock::duration>(m_left));
        m_left = std::max(m_left - Seconds(Clock::now() - begin), Seconds(0));
        return answer;
    }

private:
    Seconds m_left;
};

} // namespace

bool isDataServer(const CalendarSource& source) {
    return !source.text && source.name == dataServerSourceName;
}

class ServerCalendarStores::State {
public:
    State(std::unique_ptr<eds::DataServer> server, std::shared_ptr<const TimeZone> userZone,
          CalendarProblemHandler onProblem, DataServerWaits waits)
        : m_server(std::move(server))
        , m_userZone(std::move(userZone))
        , m_report(onProblem ? std::move(onProblem) : [](const CalendarProblem&) {})
        , m_waits(waits) {}

    void setOptional(bool isOptional) { m_isOptional = isOptional; }

    void setTimeZone(std::shared_ptr<const TimeZone> userZone) {
        m_userZone = std::move(userZone);
        for (auto& [identifier, expanded] : m_expanded) {
            expanded.stores->setTimeZone(m_userZone);
        }
    }

    void follow(std::function<void()> changed) { m_server->follow(std::move(changed)); }

    Patience patience() {
        m_lastWait = std::exchange(m_isFirst, false) ? m_waits.first : m_waits.later;
        return Patience(m_lastWait);
    }

    ListedCalendars list(Patience& patience);
    EKEvents find(const ListedCalendars& listed, const EKEventPredicate& predicate,
                  Patience& patience);

    bool anyReadable() const { return m_isListed && !m_listed.empty() && !m_areAllUnreadable; }

    bool hasCalendar(std::string_view identifier) const {
        return std::any_of(m_listed.begin(), m_listed.end(), [&](const ListedCalendar& listed) {
            return listed.calendar->calendarIdentifier == identifier;
        });
    }

    const std::vector<std::string>& deselectedCalendars() const { return m_deselected; }

private:
    // The events of a calendar as they were at the last question, and their occurrences.
    struct Expanded {
        std::shared_ptr<const std::string> text;
        std::unique_ptr<FileCalendarStores> stores;
    };

    // A silence is the same, however long it was waited for.
    void tell(const std::string& place, Outcome outcome, const std::string& problem) {
        const auto told = m_told.find(place);
        if (outcome == Outcome::answered) {
            m_told.erase(place);
        } else if (told == m_told.end() || told->second != problem) {
            m_told[place] = problem;
            m_report({place, 0, outcome == Outcome::silent ? silence() : problem});
        }
    }

    void tellOfList(const eds::CalendarList& list);
    std::string silence() const {
        return "it has not answered within " + secondsText(m_lastWait) +
               " s: its events are shown when it does";
    }
    void addEvents(const ListedCalendar& listed, const std::shared_ptr<const std::string>& text,
                   const EKEventPredicate& predicate, EKEvents& result);
    FileCalendarStores& expanded(const ListedCalendar& listed,
                                 const std::shared_ptr<const std::string>& text);

    std::unique_ptr<eds::DataServer> m_server;
    std::shared_ptr<const TimeZone> m_userZone;
    CalendarProblemHandler m_report;
    DataServerWaits m_waits;
    double m_lastWait = 0; // seconds
    bool m_isFirst = true;
    bool m_isOptional = false;
    bool m_isListed = false;
    bool m_areAllUnreadable = false; // of those that were last asked for
    ListedCalendars m_listed;
    std::vector<std::string> m_deselected;
    std::map<std::string, Expanded> m_expanded; // by the server's identifiers
    std::map<std::string, std::string> m_told;  // problems by place
    std::set<std::pair<std::string, std::string>> m_toldOfEvents;
};

class ServerCalendarStores::Store final : public platform::EKEventStore {
public:
    explicit Store(std::shared_ptr<State> state)
        : m_state(std::move(state))
        , m_patience(m_state->patience())
        , m_listed(m_state->list(m_patience)) {}

    EKCalendars calendars() override {
        EKCalendars result;
        for (const ListedCalendar& listed : m_listed) {
            result.push_back(listed.calendar);
        }
        return result;
    }

    std::shared_ptr<const platform::EKCalendar>
    calendarWithIdentifier(std::string_view id) override {
        for (const ListedCalendar& listed : m_listed) {
            if (listed.calendar->calendarIdentifier == id) {
                return listed.calendar;
            }
        }
        return nullptr;
    }

    EKEvents eventsMatchingPredicate(const EKEventPredicate& predicate) override {
        return m_state->find(m_listed, predicate, m_patience);
    }

private:
    std::shared_ptr<State> m_state;
    Patience m_patience;
    ListedCalendars m_listed;
};

ListedCalendars ServerCalendarStores::State::list(Patience& patience) {
    const eds::CalendarList list =
        patience.spend([this](eds::Deadline deadline) { return m_server->calendars(deadline); });
    m_listed.clear();
    m_deselected.clear();
    m_isListed = list.outcome == Outcome::answered;
    m_areAllUnreadable = false;
    tellOfList(list);
    for (const eds::ServerCalendar& calendar : list.calendars) {
        m_listed.push_back({calendar.identifier, eds::makeCalendar(calendar)});
        if (!calendar.isSelected) {
            m_deselected.push_back(m_listed.back().calendar->calendarIdentifier);
        }
    }
    if (m_isListed) {
        std::erase_if(m_expanded, [&](const auto& entry) {
            return std::none_of(list.calendars.begin(), list.calendars.end(),
                                [&](const auto& one) { return one.identifier == entry.first; });
        });
    }
    return m_listed;
}

void ServerCalendarStores::State::tellOfList(const eds::CalendarList& list) {
    const bool isMissedByNobody = list.outcome == Outcome::absent && m_isOptional;
    tell(std::string(dataServerName), isMissedByNobody ? Outcome::answered : list.outcome,
         list.problem);
}

EKEvents ServerCalendarStores::State::find(const ListedCalendars& listed,
                                           const EKEventPredicate& predicate, Patience& patience) {
    std::vector<const ListedCalendar*> asked;
    std::vector<std::string> identifiers;
    for (const ListedCalendar& one : listed) {
        if (isWanted(one, predicate.calendars)) {
            asked.push_back(&one);
            identifiers.push_back(one.serverIdentifier);
        }
    }
    const auto range = eds::searchedRange(predicate);
    if (asked.empty() || !range) {
        return {};
    }
    auto answers = patience.spend(
        [&](eds::Deadline deadline) { return m_server->events(identifiers, *range, deadline); });
    answers.resize(asked.size());
    EKEvents result;
    m_areAllUnreadable = true;
    for (std::size_t i = 0; i < asked.size(); ++i) {
        tell(placeOf(*asked[i]), answers[i].outcome, answers[i].problem);
        if (answers[i].text) {
            m_areAllUnreadable = false;
            addEvents(*asked[i], answers[i].text, predicate, result);
        }
    }
    std::sort(result.begin(), result.end(), comesBefore);
    return result;
}

// As the files' store finds them, in the server's calendar.
void ServerCalendarStores::State::addEvents(const ListedCalendar& listed,
                                            const std::shared_ptr<const std::string>& text,
                                            const EKEventPredicate& predicate, EKEvents& result) {
    const auto store = expanded(listed, text).makeEventStore();
    const EKCalendars calendars = store->calendars();
    for (const auto& found :
         store->eventsMatchingPredicate({predicate.startDate, predicate.endDate, calendars})) {
        auto event = std::make_shared<platform::EKEvent>(*found);
        std::string& identifier = event->persistentEvent.eventIdentifier;
        identifier.replace(0, event->calendar->calendarIdentifier.size(),
                           listed.calendar->calendarIdentifier);
        event->calendar = listed.calendar;
        result.push_back(std::move(event));
    }
}

FileCalendarStores&
ServerCalendarStores::State::expanded(const ListedCalendar& listed,
                                      const std::shared_ptr<const std::string>& text) {
    Expanded& entry = m_expanded[listed.serverIdentifier];
    if (!entry.stores || (entry.text != text && *entry.text != *text)) {
        const std::string place = placeOf(listed);
        entry.stores = std::make_unique<FileCalendarStores>(
            m_userZone, [this, place](const CalendarProblem& problem) {
                if (m_toldOfEvents.size() < mostProblemsOfEvents &&
                    m_toldOfEvents.emplace(place, problem.what).second) {
                    m_report({place, 0, problem.what});
                }
            });
        entry.stores->setSources({CalendarSource::inMemory(place, *text)});
    }
    entry.text = text;
    return *entry.stores;
}

ServerCalendarStores::ServerCalendarStores(std::unique_ptr<eds::DataServer> server,
                                           std::shared_ptr<const TimeZone> userZone,
                                           CalendarProblemHandler onProblem, DataServerWaits waits)
    : m_state(std::make_shared<State>(std::move(server), std::move(userZone), std::move(onProblem),
                                      waits)) {}

ServerCalendarStores::~ServerCalendarStores() = default;

void ServerCalendarStores::setOptional(bool isOptional) {
    m_state->setOptional(isOptional);
}

void ServerCalendarStores::setTimeZone(std::shared_ptr<const TimeZone> userZone) {
    m_state->setTimeZone(std::move(userZone));
}

std::unique_ptr<platform::EKEventStore> ServerCalendarStores::makeEventStore() {
    return std::make_unique<Store>(m_state);
}

bool ServerCalendarStores::anyReadable() const {
    return m_state->anyReadable();
}

bool ServerCalendarStores::hasCalendar(std::string_view identifier) const {
    return m_state->hasCalendar(identifier);
}

std::vector<std::string> ServerCalendarStores::deselectedCalendars() const {
    return m_state->deselectedCalendars();
}

void ServerCalendarStores::follow(std::function<void()> changed) {
    m_state->follow(std::move(changed));
}

} // namespace quorvel::freedesktop
