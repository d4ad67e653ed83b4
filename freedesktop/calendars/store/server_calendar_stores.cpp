#include "freedesktop/calendars/store/server_calendar_stores.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <utility>

#include "freedesktop/calendars/store/event_order.h"
#include "freedesktop/calendars/store/server_calendar_events.h"
#include "freedesktop/calendars/store/server_calendars.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {

using eds::ServerFailure;
using platform::EKCalendars;
using platform::EKEventPredicate;
using platform::EKEvents;

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// One calendar of a store.
struct ListedCalendar {
    std::string serverIdentifier;
    std::shared_ptr<const platform::EKCalendar> calendar;
};
using ListedCalendars = std::vector<ListedCalendar>;

std::string displayNameOf(const ListedCalendar& listed) {
    return filled(translated("the calendar '{1}' of {2}"),
                  {listed.calendar->title, dataServerName});
}

bool isWanted(const ListedCalendar& listed, const EKCalendars& wanted) {
    return std::any_of(wanted.begin(), wanted.end(), [&](const auto& calendar) {
        return calendar && calendar->calendarIdentifier == listed.calendar->calendarIdentifier;
    });
}

// The time that a store may still spend waiting for the server.
class WaitBudget {
public:
    explicit WaitBudget(double seconds)
        : m_total(seconds)
        , m_left(seconds) {}

    double total() const { return m_total.count(); } // seconds

    // Calls the server with the deadline, and subtracts what the call took.
    template <class Call>
    auto spend(Call call) {
        const Clock::time_point begin = Clock::now();
        auto answer = call(begin + std::chrono::duration_cast<Clock::duration>(m_left));
        m_left = std::max(m_left - Seconds(Clock::now() - begin), Seconds(0));
        return answer;
    }

private:
    Seconds m_total;
    Seconds m_left;
};

// The current problem of the server and of each of its calendars.
class CurrentProblems {
public:
    explicit CurrentProblems(CalendarProblemHandler onProblem)
        : m_onProblem(std::move(onProblem)) {}

    // Reports the failure unless it is the same as the last time. Silence is the same problem
    // however long the store has waited.
    void set(const std::string& name, const ServerFailure& failure, double waitedSeconds) {
        const auto current = m_current.find(name);
        if (current == m_current.end() || current->second != failure.problem) {
            m_current[name] = failure.problem;
            const bool isSilent = failure.kind == ServerFailure::Kind::silent;
            m_onProblem({name, 0, isSilent ? silence(waitedSeconds) : failure.problem});
        }
    }
    void remove(const std::string& name) { m_current.erase(name); }

private:
    static TranslatableText silence(double waitedSeconds) {
        char seconds[32];
        std::snprintf(seconds, sizeof seconds, "%.3g", waitedSeconds);
        return {translatable("it has not answered within {1} s: its events are shown when it does"),
                {TranslatableText::verbatim(seconds)}};
    }

    CalendarProblemHandler m_onProblem;
    std::map<std::string, TranslatableText> m_current; // by name
};

} // namespace

bool isDataServer(const CalendarSource& source) {
    return !source.text && source.name == dataServerSourceName;
}

// What the stores share.
class ServerCalendarStores::State {
public:
    State(std::unique_ptr<eds::DataServer> server, std::shared_ptr<const TimeZone> userZone,
          const CalendarProblemHandler& onProblem, DataServerWaits waits)
        : m_server(std::move(server))
        , m_waits(waits)
        , m_problems(onProblem)
        , m_events(std::move(userZone), onProblem) {}

    void setOptional(bool isOptional) { m_isOptional = isOptional; }
    void setTimeZone(std::shared_ptr<const TimeZone> userZone) {
        m_events.setTimeZone(std::move(userZone));
    }
    void setChangedHandler(std::function<void()> onChanged) {
        m_server->setChangedHandler(std::move(onChanged));
    }

    WaitBudget nextBudget() {
        return WaitBudget(std::exchange(m_isFirst, false) ? m_waits.first : m_waits.later);
    }
    ListedCalendars list(WaitBudget& budget);
    EKEvents find(const ListedCalendars& listed, const EKEventPredicate& predicate,
                  WaitBudget& budget);

    bool anyReadable() const { return m_isListed && !m_listed.empty() && !m_areAllUnreadable; }
    bool hasCalendar(std::string_view identifier) const {
        return std::any_of(m_listed.begin(), m_listed.end(), [&](const ListedCalendar& listed) {
            return listed.calendar->calendarIdentifier == identifier;
        });
    }
    const std::vector<std::string>& deselectedCalendars() const { return m_deselected; }
    const std::vector<CalendarProblem>& unreadable() const { return m_unreadable; }
    bool isLate() const { return m_isLate; }

private:
    void addUnreadable(const std::string& name, const ServerFailure& failure);
    void setListed(const eds::CalendarList& list);

    std::unique_ptr<eds::DataServer> m_server;
    DataServerWaits m_waits;
    bool m_isFirst = true;
    bool m_isOptional = false;
    bool m_isListed = false;
    bool m_isLate = false; // an answer to the last store
    std::vector<CalendarProblem> m_unreadable;
    bool m_areAllUnreadable = false; // of those that were asked for last
    ListedCalendars m_listed;
    std::vector<std::string> m_deselected;
    CurrentProblems m_problems;
    calendars::ServerCalendarEvents m_events;
};

class ServerCalendarStores::Store final : public platform::EKEventStore {
public:
    explicit Store(std::shared_ptr<State> state)
        : m_state(std::move(state))
        , m_budget(m_state->nextBudget())
        , m_listed(m_state->list(m_budget)) {}

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
        return m_state->find(m_listed, predicate, m_budget);
    }

private:
    std::shared_ptr<State> m_state;
    WaitBudget m_budget;
    ListedCalendars m_listed;
};

ListedCalendars ServerCalendarStores::State::list(WaitBudget& budget) {
    const auto list =
        budget.spend([this](eds::Deadline deadline) { return m_server->calendars(deadline); });
    const std::string name(dataServerName);
    m_isLate = false;
    m_unreadable.clear();
    if (list || (m_isOptional && list.error().kind == ServerFailure::Kind::absent)) {
        m_problems.remove(name);
    } else {
        m_problems.set(name, list.error(), budget.total());
        addUnreadable(name, list.error());
    }
    m_isListed = list.hasValue();
    setListed(list ? *list : eds::CalendarList());
    return m_listed;
}

void ServerCalendarStores::State::setListed(const eds::CalendarList& list) {
    m_listed.clear();
    m_deselected.clear();
    m_areAllUnreadable = false;
    for (const eds::ServerCalendar& calendar : list) {
        m_listed.push_back({calendar.identifier, eds::makeCalendar(calendar)});
        if (!calendar.isSelected) {
            m_deselected.push_back(m_listed.back().calendar->calendarIdentifier);
        }
    }
    if (m_isListed) {
        m_events.removeUnless([this](const std::string& id) { return hasCalendar(id); });
    }
}

EKEvents ServerCalendarStores::State::find(const ListedCalendars& listed,
                                           const EKEventPredicate& predicate, WaitBudget& budget) {
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
    auto answers = budget.spend(
        [&](eds::Deadline deadline) { return m_server->events(identifiers, *range, deadline); });
    answers.resize(asked.size());
    EKEvents result;
    m_areAllUnreadable = true;
    m_unreadable.clear();
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const std::string name = displayNameOf(*asked[i]);
        if (const auto& text = answers[i].text) {
            m_problems.remove(name);
            m_areAllUnreadable = false;
            m_events.addEvents({asked[i]->calendar, name, *text}, predicate, result);
        } else {
            m_problems.set(name, text.error(), budget.total());
            addUnreadable(name, text.error());
        }
    }
    std::sort(result.begin(), result.end(), comesBefore);
    return result;
}

void ServerCalendarStores::State::addUnreadable(const std::string& name,
                                                const ServerFailure& failure) {
    const bool isSilent = failure.kind == ServerFailure::Kind::silent;
    m_isLate = m_isLate || isSilent;
    m_unreadable.push_back(
        {name, 0, isSilent ? translatable("it has not answered yet") : failure.problem});
}

ServerCalendarStores::ServerCalendarStores(std::unique_ptr<eds::DataServer> server,
                                           std::shared_ptr<const TimeZone> userZone,
                                           CalendarProblemHandler onProblem, DataServerWaits waits)
    : m_state(std::make_shared<State>(
          std::move(server), std::move(userZone),
          onProblem ? std::move(onProblem) : [](const CalendarProblem&) {}, waits)) {}

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

void ServerCalendarStores::setChangedHandler(std::function<void()> onChanged) {
    m_state->setChangedHandler(std::move(onChanged));
}

std::vector<CalendarProblem> ServerCalendarStores::unreadable() const {
    return m_state->unreadable();
}

bool ServerCalendarStores::isLate() const {
    return m_state->isLate();
}

} // namespace quorvel::freedesktop
