#include "freedesktop/calendars/thunderbird/profile_calendars.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>

#include "base/translatable_text.h"
#include "freedesktop/calendars/files/calendar_folder.h"
#include "freedesktop/calendars/thunderbird/profiles.h"
#include "freedesktop/io/regular_file.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

using calendars::LoadedCalendar;

constexpr std::size_t largestPreferences = std::size_t{16} << 20U; // bytes

FileVersion versionAt(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? versionOf(status) : FileVersion();
}

std::string displayNameOf(const RegisteredCalendar& calendar) {
    return filled(translated("the calendar '{1}' of {2}"),
                  {calendar.name.empty() ? calendar.id : calendar.name, programName});
}

} // namespace

ProfileCalendars::ProfileCalendars(std::string folder)
    : m_folder(std::move(folder))
    , m_local(localDatabasePath(m_folder))
    , m_cache(cacheDatabasePath(m_folder)) {}

void ProfileCalendars::scan() {
    const FileVersion version = versionAt(preferencesPath(m_folder));
    if (!m_arePreferencesSettled || version != m_preferences) {
        const std::int64_t readAt = fileClock();
        readPreferences();
        m_preferences = version;
        m_arePreferencesSettled = freedesktop::isSettled(version, readAt);
    }
    m_local.scan();
    m_cache.scan();
}

// Where they cannot be read the calendars stay as they were.
void ProfileCalendars::readPreferences() {
    const auto bytes = readRegularFile(preferencesPath(m_folder), largestPreferences);
    m_problem = !bytes ? bytes.error().what : !*bytes ? translatable("there is no such file") : "";
    if (m_problem.empty()) {
        const auto& script = **bytes;
        m_registry =
            registeredCalendars({reinterpret_cast<const char*>(script.data()), script.size()});
    }
}

void ProfileCalendars::addTo(SignatureHash& signature) const {
    signature.add(std::string_view(m_folder));
    signature.add(std::string_view(m_problem));
    calendars::addToSignature(m_preferences, signature);
    m_local.addTo(signature);
    m_cache.addTo(signature);
}

std::vector<WantedCalendar> ProfileCalendars::wantedOf(bool isLocal) const {
    std::vector<WantedCalendar> wanted;
    for (const RegisteredCalendar& calendar : m_registry) {
        if (calendar.isLocal == isLocal) {
            wanted.push_back({calendar.id, displayNameOf(calendar)});
        }
    }
    return wanted;
}

void ProfileCalendars::readDatabases(const calendars::ReadContext& context) {
    m_local.read(wantedOf(true), context);
    m_cache.read(wantedOf(false), context);
}

std::size_t ProfileCalendars::bytesInMemory() const {
    return m_local.bytesInMemory() + m_cache.bytesInMemory();
}

void ProfileCalendars::build() {
    std::vector<std::shared_ptr<LoadedCalendar>> built;
    for (const RegisteredCalendar& registered : m_registry) {
        const auto events = eventsOf(registered);
        const ProfileDatabase& database = registered.isLocal ? m_local : m_cache;
        if (events || !database.exists()) {
            built.push_back(calendarOf(registered, events));
        }
    }
    m_calendars = std::move(built);
}

std::shared_ptr<icalendar::LoadedFile>
ProfileCalendars::eventsOf(const RegisteredCalendar& registered) const {
    return (registered.isLocal ? m_local : m_cache).calendar(registered.id);
}

// The same object as before where neither the names nor the events have changed.
std::shared_ptr<LoadedCalendar>
ProfileCalendars::calendarOf(const RegisteredCalendar& registered,
                             const std::shared_ptr<icalendar::LoadedFile>& events) {
    auto calendar = calendars::namedCalendar(
        {calendars::calendarIdentifier("thunderbird", std::string(sourceName) + registered.id),
         registered.name, registered.colour, std::string(programName)});
    std::vector<std::shared_ptr<icalendar::LoadedFile>> files;
    if (events) {
        files.push_back(events);
    }
    const auto previous = std::ranges::find_if(m_calendars, [&](const auto& known) {
        return known->calendar->calendarIdentifier == calendar->calendarIdentifier &&
               known->calendar->title == calendar->title &&
               known->calendar->CGColor == calendar->CGColor && known->files == files;
    });
    auto result = previous != m_calendars.end()
                      ? *previous
                      : calendars::makeLoadedCalendar(std::move(calendar), std::move(files));
    result->store = std::string(programName) + ": " + m_folder;
    result->isDeselected = !registered.isSelected;
    return result;
}

bool ProfileCalendars::isSettled() const {
    return m_arePreferencesSettled && m_local.isSettled() && m_cache.isSettled();
}

void ProfileCalendars::addTo(std::vector<calendars::VersionedProblem>& problems) const {
    if (!m_problem.empty()) {
        problems.push_back({{preferencesPath(m_folder), 0, m_problem}, 0, true});
    }
    m_local.addTo(problems);
    m_cache.addTo(problems);
    for (const RegisteredCalendar& calendar : m_registry) {
        const auto events = eventsOf(calendar);
        if (!calendar.isLocal && !calendar.isCached && (!events || events->ics.events.empty())) {
            problems.push_back({{displayNameOf(calendar), 0,
                                 translatable("its events are on a server alone: switch on "
                                              "'Offline Support' in its properties in "
                                              "Thunderbird")},
                                0});
        }
    }
}

} // namespace quorvel::freedesktop::thunderbird
