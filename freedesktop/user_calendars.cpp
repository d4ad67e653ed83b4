#include "freedesktop/user_calendars.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "freedesktop/calendars/files/calendar_file_names.h"
#include "freedesktop/calendars/server/started_data_server.h"
#include "freedesktop/calendars/store/background_calendar_stores.h"
#include "freedesktop/calendars/store/server_calendar_stores.h"
#include "freedesktop/calendars/thunderbird/profiles.h"
#include "freedesktop/glib/thread_signal.h"

namespace quorvel::freedesktop {

namespace {

// For a host without a desktop.
class NoSourcesSearch final : public eds::SourcesSearch {
public:
    Result<std::string, TranslatableText> find() override {
        return TranslatableText(translatable("there is no session bus"));
    }
    void cancel() override {}
};

std::unique_ptr<eds::SourcesSearch> makeSourcesSearch(const std::shared_ptr<Desktop>& desktop) {
    return desktop ? desktop->makeSourcesSearch() : std::make_unique<NoSourcesSearch>();
}

} // namespace

UserCalendars::UserCalendars(UserCalendarOptions options)
    : m_options(std::move(options))
    , m_subscriptions(m_options.subscriptions)
    , m_files(m_options.timeZone, m_options.problemHandler) {}

UserCalendars::~UserCalendars() = default;

void UserCalendars::setSources(std::vector<CalendarSource> sources) {
    m_named = std::move(sources);
    m_sources.reset();
    updateSources();
}

void UserCalendars::setSubscriptionListFolder(const std::string& folder) {
    m_subscriptions.setListFolder(folder);
}

std::unique_ptr<platform::EKEventStore> UserCalendars::makeEventStore() {
    updateSources();
    if (m_options.problemHandler) {
        for (const CalendarProblem& problem : m_subscriptions.newProblems()) {
            m_options.problemHandler(problem);
        }
    }
    return m_stores.makeEventStore();
}

// Where nothing has changed, the stores need not read anything again.
void UserCalendars::updateSources() {
    std::vector<CalendarSource> sources = m_subscriptions.withSubscriptions(m_named);
    if (m_sources != sources) {
        m_sources = sources;
        useSources(std::move(sources));
    }
}

void UserCalendars::useSources(std::vector<CalendarSource> sources) {
    const auto server = std::find_if(sources.begin(), sources.end(), isDataServer);
    const bool isServerFirst = server == sources.begin();
    m_usesServer = server != sources.end();
    if (m_usesServer) {
        makeServer();
        m_server->setOptional(server->isOptional);
    }
    std::erase_if(sources, isDataServer);
    m_usesFiles = !sources.empty();
    m_thunderbird.clear();
    std::ranges::copy_if(sources, std::back_inserter(m_thunderbird), thunderbird::isThunderbird);
    m_files.setSources(std::move(sources));
    std::vector<platform::CalendarStores*> stores;
    if (m_usesFiles) {
        stores.push_back(&m_files);
    }
    if (m_usesServer) {
        stores.insert(isServerFirst ? stores.begin() : stores.end(), m_server.get());
    }
    m_stores.setStores(std::move(stores));
}

void UserCalendars::makeServer() {
    if (!m_server) {
        m_server = makeServerStores();
        follow();
    }
}

std::unique_ptr<LiveCalendarStores> UserCalendars::makeServerStores() const {
    const auto makeStores = [options = m_options] {
        return std::make_unique<ServerCalendarStores>(
            std::make_unique<eds::StartedDataServer>(options.dataServerModule,
                                                     makeSourcesSearch(options.desktop)),
            options.timeZone, options.problemHandler, options.dataServerWaits);
    };
    if (!m_options.backgroundServerWaits) {
        return makeStores();
    }
    const auto onProblem = [handler = m_options.problemHandler](const std::string& what) {
        if (handler) {
            handler({std::string(dataServerName), 0, what});
        }
    };
    return std::make_unique<BackgroundCalendarStores>(makeStores, m_options.timeZone, onProblem,
                                                      *m_options.backgroundServerWaits);
}

void UserCalendars::setTimeZone(const std::shared_ptr<const TimeZone>& zone) {
    m_options.timeZone = zone;
    m_files.setTimeZone(zone);
    if (m_server) {
        m_server->setTimeZone(zone);
    }
}

void UserCalendars::setIndex(const std::string& folder,
                             std::function<void(const std::string&)> onProblem) {
    m_files.setIndex(folder, std::move(onProblem));
}

void UserCalendars::setWaits(CalendarWaits waits) {
    m_files.setWaits(waits);
}

void UserCalendars::beginReading() {
    if (m_usesFiles) {
        m_files.beginReading();
    }
}

void UserCalendars::setChangedHandler(std::function<void()> onChanged) {
    m_changed = onChanged ? std::make_unique<ThreadSignal>(std::move(onChanged)) : nullptr;
    follow();
}

void UserCalendars::follow() {
    m_files.setChangedHandler(m_changed ? m_changed->sender() : nullptr);
    if (m_server) {
        m_server->setChangedHandler(m_changed ? m_changed->sender() : nullptr);
    }
}

bool UserCalendars::anyReadable() const {
    return (m_usesFiles && m_files.anyReadable() && m_files.anyCalendar()) ||
           (m_usesServer && m_server->anyReadable());
}

std::vector<CalendarProblem> UserCalendars::unreadable() const {
    std::vector<CalendarProblem> unreadable;
    if (m_usesFiles) {
        unreadable = m_files.unreadable();
        for (CalendarProblem& problem : unreadable) {
            problem.file = std::string(calendars::lastComponent(problem.file));
        }
    }
    if (m_usesServer) {
        const auto ofServer = m_server->unreadable();
        unreadable.insert(unreadable.end(), ofServer.begin(), ofServer.end());
    }
    const auto ofSubscriptions = m_subscriptions.problems();
    unreadable.insert(unreadable.end(), ofSubscriptions.begin(), ofSubscriptions.end());
    return unreadable;
}

bool UserCalendars::isLate() const {
    return (m_usesFiles && m_files.isLate()) || (m_usesServer && m_server->isLate());
}

std::string UserCalendars::storeOf(std::string_view identifier) const {
    if (m_usesServer && m_server->hasCalendar(identifier)) {
        return std::string(dataServerName);
    }
    return m_files.storeOf(identifier);
}

std::vector<std::string> UserCalendars::deselected() const {
    std::vector<std::string> deselected = m_files.deselectedCalendars();
    if (m_usesServer) {
        const auto ofServer = m_server->deselectedCalendars();
        deselected.insert(deselected.end(), ofServer.begin(), ofServer.end());
    }
    return deselected;
}

std::vector<WatchedPath> UserCalendars::watchedPaths() const {
    std::vector<std::string> ofFiles = m_files.paths();
    for (const CalendarSource& source : *m_sources) {
        if (source.copy) {
            std::erase(ofFiles, source.name);
        }
    }
    std::vector<WatchedPath> paths;
    paths.reserve(ofFiles.size());
    for (std::string& path : ofFiles) {
        paths.push_back({std::move(path), deepestCalendarFolder, mayBelongToCalendar});
    }
    for (const CalendarSource& source : m_thunderbird) {
        for (thunderbird::ProfileFolder& folder : thunderbird::foldersToWatch(source)) {
            paths.push_back({std::move(folder.path), 0, folder.matters});
        }
    }
    return paths;
}

} // namespace quorvel::freedesktop
