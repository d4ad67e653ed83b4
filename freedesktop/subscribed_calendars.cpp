#include "freedesktop/subscribed_calendars.h"

#include <algorithm>

#include "freedesktop/calendars/subscriptions/copy_status.h"
#include "freedesktop/calendars/subscriptions/subscription_list.h"

namespace quorvel::freedesktop {

namespace {

bool isCopyOf(const CalendarSource& source, const std::string& url) {
    return source.copy && source.copy->origin == url;
}

} // namespace

SubscribedCalendars::SubscribedCalendars(SubscriptionOptions options)
    : m_options(std::move(options))
    , m_cache(m_options.cacheFolder) {}

void SubscribedCalendars::setListFolder(const std::string& folder) {
    if (m_options.listFolder) {
        m_options.listFolder = folder;
    }
}

std::vector<CalendarSource>
SubscribedCalendars::withSubscriptions(const std::vector<CalendarSource>& named) {
    m_sources = named;
    m_listProblem.reset();
    if (!m_options.listFolder) {
        return m_sources;
    }
    const auto list = readSubscriptions(*m_options.listFolder);
    if (!list) {
        m_listProblem = CalendarProblem{
            std::string(subscriptionListName), 0,
            TranslatableText(translatable("it cannot be read: {1}"), {list.error().what})};
        return m_sources;
    }
    for (const Subscription& subscription : *list) {
        const bool isNamed = std::ranges::any_of(named, [&](const CalendarSource& source) {
            return isCopyOf(source, subscription.url);
        });
        if (!isNamed) {
            m_sources.push_back(sourceOf(subscription, m_cache));
        }
    }
    return m_sources;
}

std::vector<CalendarProblem> SubscribedCalendars::problems(ProblemText text) const {
    std::vector<CalendarProblem> problems = copyProblems(m_sources, m_cache, systemSeconds(), text);
    if (m_listProblem) {
        problems.push_back(*m_listProblem);
    }
    return problems;
}

// A copy grows older, so that the whole text does not show whether the problem is a new one: its
// last value is the cause.
std::vector<CalendarProblem> SubscribedCalendars::newProblems() {
    std::vector<CalendarProblem> unreported;
    std::set<std::pair<std::string, std::string>> current;
    for (CalendarProblem& problem : problems(ProblemText::reasonAndAdvice)) {
        const std::vector<TranslatableText>& values = problem.what.values();
        const std::string cause = values.empty() ? problem.what.english() : values.back().english();
        if (m_reported.count({problem.file, cause}) == 0) {
            unreported.push_back(problem);
        }
        current.emplace(problem.file, cause);
    }
    m_reported = std::move(current);
    return unreported;
}

std::vector<std::string> SubscribedCalendars::folders() const {
    std::vector<std::string> folders;
    for (const CalendarSource& source : m_sources) {
        if (source.copy) {
            folders.push_back(m_cache.folderOf(source.copy->origin));
        }
    }
    return folders;
}

std::optional<double> SubscribedCalendars::secondsUntilRefresh() const {
    if (m_options.refreshProgram.empty()) {
        return std::nullopt;
    }
    const std::int64_t now = systemSeconds();
    const auto next = nextRefresh(m_sources, m_cache, now);
    return next ? std::optional(static_cast<double>(std::max<std::int64_t>(*next - now, 0)))
                : std::nullopt;
}

std::optional<ProgramCall> SubscribedCalendars::refreshCall() const {
    return callFor(dueCopies(m_sources, m_cache, systemSeconds()));
}

std::optional<ProgramCall>
SubscribedCalendars::refreshCallForOlderThan(std::int64_t seconds) const {
    const std::int64_t now = systemSeconds();
    return callFor(copiesTriedBefore(m_sources, m_cache, now - seconds, now));
}

std::optional<ProgramCall>
SubscribedCalendars::callFor(const std::vector<std::string>& urls) const {
    return urls.empty() || m_options.refreshProgram.empty()
               ? std::nullopt
               : std::optional(freedesktop::refreshCall(m_options, urls));
}

// Addresses may be secrets, and everybody can read the arguments of a process.
ProgramCall refreshCall(const SubscriptionOptions& options, const std::vector<std::string>& urls) {
    ProgramCall call;
    call.arguments = {options.refreshProgram, "--cache", options.cacheFolder};
    for (const std::string& url : urls) {
        call.input += url + '\n';
    }
    return call;
}

} // namespace quorvel::freedesktop
